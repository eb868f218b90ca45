#pragma once

#include <juce_core/juce_core.h>

namespace Platform
{

/** The runtime folder of a bus, /tmp/lmcom-<uid>/<bus>/, where its endpoints live. Folders are
    mode 0700 and owned by the user; one with another owner, a wider mode, or that is not a
    real folder is refused, never used. */
struct BusFolder
{
    /** The bus's folder name: the bus name, or "default" for the default bus. */
    static juce::String busDirectoryName();

    /** Makes (or checks) the folder of the current bus. On success returns true and sets path
        (ending with a slash); otherwise sets error. */
    static bool prepare(juce::String& path, juce::String& error);

    /** Checks the folders of the current bus without making them: true when both exist and
        are safe to use. Otherwise false, with error saying who owns a refused folder and what
        to do (empty when the bus simply has no folder yet). Every lookup checks first. */
    static bool check(juce::String& error);

    /** The folder's path without checking or making it. */
    static juce::String path();

    /** A name as a single file-name component: letters, digits, '.', '_' and '-' stay; every
        other byte (and a leading '.') becomes %XX. "" becomes "%". */
    static juce::String encodeName(const juce::String& name);
    /** The inverse of encodeName. */
    static juce::String decodeName(const juce::String& encoded);
};

} // namespace Platform
