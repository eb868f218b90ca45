#include "PureMVC/Model.h"

#include "PureMVC/detail/Multiton.h"

namespace PureMVC
{

namespace
{
detail::Multiton<Model>& instances()
{
    static detail::Multiton<Model> models;
    return models;
}
} // namespace

Model::Ptr Model::getInstance(const juce::String& key, const Create& create)
{
    return instances().get(key, create, [](Model& model) { model.initializeModel(); });
}

Model::Ptr Model::findInstance(const juce::String& key)
{
    return instances().find(key);
}

void Model::removeModel(const juce::String& key)
{
    if (auto model = instances().take(key))
        model->removeAllProxies();
}

bool Model::registerProxy(Proxy* proxy)
{
    const Proxy::Ptr added(proxy);
    if (added == nullptr)
        return false;
    added->initializeNotifier(m_multitonKey);
    Proxy::Ptr replaced;
    {
        const Mutex::ScopedLock lock(m_lock);
        auto& slot = m_proxyMap[added->getProxyName()];
        if (slot == added)
            return true;
        replaced = std::exchange(slot, added);
    }
    if (replaced != nullptr)
        replaced->onRemove();
    added->onRegister();
    return true;
}

Proxy::Ptr Model::retrieveProxy(int proxyName) const
{
    const Mutex::ScopedLock lock(m_lock);
    auto found = m_proxyMap.find(proxyName);
    return found != m_proxyMap.end() ? found->second : nullptr;
}

bool Model::hasProxy(int proxyName) const
{
    return retrieveProxy(proxyName) != nullptr;
}

Proxy::Ptr Model::removeProxy(int proxyName)
{
    Proxy::Ptr removed;
    {
        const Mutex::ScopedLock lock(m_lock);
        auto found = m_proxyMap.find(proxyName);
        if (found == m_proxyMap.end())
            return nullptr;
        removed = found->second;
        m_proxyMap.erase(found);
    }
    removed->onRemove();
    return removed;
}

void Model::removeAllProxies()
{
    std::map<int, Proxy::Ptr> removed;
    {
        const Mutex::ScopedLock lock(m_lock);
        removed.swap(m_proxyMap);
    }
    for (auto& entry : removed)
        entry.second->onRemove();
}

} // namespace PureMVC
