#pragma once

#include "PureMVC/Mutex.h"

#include <juce_core/juce_core.h>

#include <functional>
#include <map>

namespace PureMVC::detail
{

/** The instances of one kind of core actor (facade, model, view or controller), one per
    multiton key. Any thread; the map holds a reference to each instance. */
template <class T>
class Multiton
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<T>;
    using Create = std::function<T*(const juce::String& key)>;

    /** The key's instance; when there is none, one made by create (or new T(key)) and then
        passed to initialize, both under the lock, so that every caller sees it initialized.
        A null from create gives null and stores nothing. */
    Ptr get(const juce::String& key, const Create& create, const std::function<void(T&)>& initialize = {})
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_instances.find(key);
        if (found != m_instances.end())
            return found->second;
        Ptr instance(create ? create(key) : new T(key));
        if (instance == nullptr)
            return nullptr;
        m_instances.emplace(key, instance);
        if (initialize)
            initialize(*instance);
        return instance;
    }

    /** The key's instance, or null; never makes one. */
    Ptr find(const juce::String& key) const
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_instances.find(key);
        return found != m_instances.end() ? found->second : nullptr;
    }

    /** Takes the key's instance out of the map and returns it (null when there was none). */
    Ptr take(const juce::String& key)
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_instances.find(key);
        if (found == m_instances.end())
            return nullptr;
        Ptr instance = found->second;
        m_instances.erase(found);
        return instance;
    }

private:
    Mutex m_lock;
    std::map<juce::String, Ptr> m_instances;
};

} // namespace PureMVC::detail
