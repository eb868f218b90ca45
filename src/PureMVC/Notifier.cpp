#include "PureMVC/Notifier.h"

#include "PureMVC/Facade.h"

namespace PureMVC
{

void Notifier::sendNotification(int name, Notification::Body body, const juce::String& type)
{
    if (auto facade = getFacade())
        facade->sendNotification(name, std::move(body), type);
}

void Notifier::initializeNotifier(const juce::String& key)
{
    const FastMutex::ScopedLock lock(m_keyLock);
    m_multitonKey = key;
}

juce::String Notifier::getMultitonKey() const
{
    const FastMutex::ScopedLock lock(m_keyLock);
    return m_multitonKey;
}

juce::ReferenceCountedObjectPtr<Facade> Notifier::getFacade() const
{
    const auto key = getMultitonKey();
    return key.isEmpty() ? nullptr : Facade::findInstance(key);
}

} // namespace PureMVC
