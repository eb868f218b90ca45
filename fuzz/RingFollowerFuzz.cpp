// The tool's ring follower over a ring that holds garbage: the first bytes of the input are
// the header, the rest lands at the offsets the input names, between polls.
#include "RingFollower.h"

#include <LmCom.h>

#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static std::vector<unsigned char> ring((size_t)MsgSession::kRingSize);
    std::fill(ring.begin(), ring.end(), 0);
    size_t i = 0;
    const auto take = [&](size_t n)
    {
        const size_t start = i;
        i = std::min(size, i + n);
        return std::make_pair(data + start, i - start);
    };
    const auto [head, headSize] = take(16);
    std::copy(head, head + headSize, ring.begin());

    LmComTool::RingFollower follower(ring.data(), nullptr);
    follower.start();
    while (i + 4 < size)
    {
        // offset (3 bytes), count, then count bytes written there; then a poll.
        const size_t offset = ((size_t)data[i] | (size_t)data[i + 1] << 8 | (size_t)data[i + 2] << 16) % ring.size();
        const size_t count = data[i + 3];
        i += 4;
        const auto [bytes, n] = take(count);
        std::copy(bytes, bytes + std::min(n, ring.size() - offset), ring.begin() + (long)offset);
        follower.poll([](const LmComTool::RingFollower::Event&) {});
    }
    return 0;
}
