#pragma once

#include "PureMVC/Notifier.h"

namespace PureMVC
{

/** A piece of the model: data (any reference-counted object) under an int name, and the code
    that keeps it.

    The core owns a registered proxy by reference count: Model::registerProxy takes the pointer,
    and a Ptr obtained from retrieveProxy keeps the proxy alive after its removal. onRegister
    and onRemove run on the registering / removing thread, outside the core's locks.
    getData/setData may be called from any thread (the data pointer is guarded; the data
    object itself is not).
*/
class Proxy : public juce::ReferenceCountedObject, public Notifier
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Proxy>;
    using Data = Notification::Body;

    explicit Proxy(int proxyName, Data data = nullptr) : m_proxyName(proxyName), m_data(std::move(data)) {}

    int getProxyName() const { return m_proxyName; }

    void setData(Data data);
    Data getData() const;
    /** The data as T, or null when there is none or it is another kind of object. */
    template <class T>
    juce::ReferenceCountedObjectPtr<T> getDataAs() const
    {
        auto data = getData();
        return dynamic_cast<T*>(data.get());
    }

    /** Called once the Model holds the proxy. */
    virtual void onRegister() {}
    /** Called once the Model has let the proxy go (removeProxy, a replacing proxy, removeCore). */
    virtual void onRemove() {}

private:
    const int m_proxyName;
    FastMutex m_dataLock;
    Data m_data;
};

} // namespace PureMVC
