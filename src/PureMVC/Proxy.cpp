#include "PureMVC/Proxy.h"

namespace PureMVC
{

void Proxy::setData(Data data)
{
    Data previous;
    {
        const FastMutex::ScopedLock lock(m_dataLock);
        previous = std::exchange(m_data, std::move(data));
    }
    // previous is released here, outside the spin lock: its destructor may take its time.
}

Proxy::Data Proxy::getData() const
{
    const FastMutex::ScopedLock lock(m_dataLock);
    return m_data;
}

} // namespace PureMVC
