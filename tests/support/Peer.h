#pragma once

#include "support/MessageLoop.h"

#include <LmCom.h>

#include <string>
#include <vector>

namespace LmComTesting
{

/** What a session consumer saw, in order. */
struct Seen
{
    bool own; // procOwnerMsg (true) or procUnknownMsg
    int code, param1, param2, sender;
    Bundle::Ptr bundle;
};

/** A consumer that records everything it receives. */
class RecordingProc : public IMsgProc
{
public:
    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg) override;
    void procUnknownMsg(int msg, int wParam, int lParam) override;

    std::vector<Seen> seen;
    /** Messages of one code seen so far. */
    int count(int code) const;
};

/** A message whose content is derived from (writer, seq): a reader can tell whether what it
    rebuilt is exactly what was sent. Code kStampedCode, param1 writer, param2 seq. */
constexpr int kStampedCode = 5000;
RemoteMessage::Ptr makeStamped(int writer, int seq, int bytes);
bool isIntactStamped(const RemoteMessage& msg);

} // namespace LmComTesting
