#include "PureMVC/Notification.h"

namespace PureMVC
{

juce::String Notification::toString() const
{
    return "Notification Name: " + juce::String(m_name) + "\nBody: " + (m_body != nullptr ? "object" : "null")
           + "\nType: " + m_type;
}

} // namespace PureMVC
