#pragma once

#include "PureMVC/Mutex.h"
#include "PureMVC/Proxy.h"

#include <functional>
#include <map>

namespace PureMVC
{

/** The proxies of one core, by int name.

    One Model per multiton key (getInstance). It owns its proxies by reference count:
    registerProxy takes the pointer. Any thread: the map is guarded, and onRegister / onRemove
    run outside the lock on the calling thread.
*/
class Model : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Model>;
    using Create = std::function<Model*(const juce::String& key)>;

    /** Use getInstance: the core's Model is the one in the multiton map. */
    explicit Model(const juce::String& key) : m_multitonKey(key) {}

    /** The key's Model; when there is none, one made by create (default: a Model), then
        initializeModel. */
    static Ptr getInstance(const juce::String& key, const Create& create = {});
    /** The key's Model or null; never makes one. */
    static Ptr findInstance(const juce::String& key);
    /** Drops the key's Model and removes every proxy it holds (onRemove called). */
    static void removeModel(const juce::String& key);

    /** Takes the proxy (the Model owns it from now on; the caller may keep its own Ptr), gives
        it the core's key, then calls onRegister. A proxy already under that name is replaced
        and removed (onRemove). False, and nothing changes, for null. */
    bool registerProxy(Proxy* proxy);
    /** The proxy of that name, or null. */
    Proxy::Ptr retrieveProxy(int proxyName) const;
    /** The proxy of that name as T, or null when there is none or it is another kind. */
    template <class T>
    juce::ReferenceCountedObjectPtr<T> retrieveProxy(int proxyName) const
    {
        auto proxy = retrieveProxy(proxyName);
        return dynamic_cast<T*>(proxy.get());
    }
    bool hasProxy(int proxyName) const;
    /** Takes the proxy out, calls onRemove and returns it (null when there was none). */
    Proxy::Ptr removeProxy(int proxyName);

    const juce::String& getMultitonKey() const { return m_multitonKey; }

protected:
    /** Called once, right after the Model is made by getInstance. */
    virtual void initializeModel() {}

private:
    void removeAllProxies();

    const juce::String m_multitonKey;
    Mutex m_lock;
    std::map<int, Proxy::Ptr> m_proxyMap;
};

} // namespace PureMVC
