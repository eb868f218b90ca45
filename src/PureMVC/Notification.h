#pragma once

#include <juce_core/juce_core.h>

namespace PureMVC
{

/** What travels from a sender to the observers of its name: an int name, an optional body
    (any reference-counted object, usually a Bundle) and an optional type string.

    A notification is built by the sender and then only read; the observers of one delivery
    share it, on the sender's thread. Keep a Ptr to hold it (or its body) beyond a handler.
*/
class Notification : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<Notification>;
    using Body = juce::ReferenceCountedObjectPtr<juce::ReferenceCountedObject>;

    explicit Notification(int name, Body body = nullptr, const juce::String& type = {})
        : m_name(name), m_body(std::move(body)), m_type(type)
    {
    }

    int getName() const { return m_name; }
    const Body& getBody() const { return m_body; }
    void setBody(Body body) { m_body = std::move(body); }
    /** The body as T, or null when there is none or it is another kind of object. */
    template <class T>
    juce::ReferenceCountedObjectPtr<T> getBodyAs() const
    {
        return dynamic_cast<T*>(m_body.get());
    }
    const juce::String& getType() const { return m_type; }
    void setType(const juce::String& type) { m_type = type; }

    /** "Notification Name: 7\nBody: null\nType: " (for logs). */
    juce::String toString() const;

private:
    int m_name;
    Body m_body;
    juce::String m_type;
};

} // namespace PureMVC
