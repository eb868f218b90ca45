#pragma once

#include <juce_core/juce_core.h>

namespace Platform
{

/** A named shared mapping of one bus, readable and writable only by this user (mode 0600).

    The name is scoped by the bus, so buses never meet. An opener never sees a mapping smaller
    than its size: it waits (bounded) for the creator to size it, and refuses one that is
    smaller or belongs to someone else. The mapping lives until the object goes.
*/
class SharedMemory
{
public:
    explicit SharedMemory(const juce::String& name);
    ~SharedMemory();

    /** Opens an existing mapping of at least `size` bytes. False when there is none (or it is
        not usable; see lastError). */
    bool open(int size);
    /** Creates the mapping of `size` bytes, zero-filled. False when it already exists (then
        open it) or cannot be made. */
    bool create(int size);

    unsigned char* data() const { return m_pData; }
    int size() const { return m_nSize; }
    const juce::String& lastError() const { return m_lastError; }
    /** The system name of the mapping (for tools). */
    const juce::String& systemName() const { return m_systemName; }

    /** The system name a bus gives to a mapping called `name`. */
    static juce::String systemNameFor(const juce::String& name);

    enum class RemoveResult
    {
        removed,
        absent,
        failed
    };
    /** Removes the current bus's mapping called `name` (processes that have it mapped keep
        their mapping); on failure sets error. */
    static RemoveResult remove(const juce::String& name, juce::String& error);

private:
    bool mapDescriptor(int fd, int size);

    juce::String m_systemName;
    unsigned char* m_pData = nullptr;
    int m_nSize = 0;
    juce::String m_lastError;

    JUCE_DECLARE_NON_COPYABLE(SharedMemory)
};

} // namespace Platform
