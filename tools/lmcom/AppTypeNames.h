#pragma once

#include <juce_core/juce_core.h>

#include <string>

namespace LmComTool
{

/** Application types (eAppType) by name: printable names ("AppRadio"), destination names
    ("Radio", "NavigRecive"; AppNavi's comes from Bin/QN_MAIN.ini) and numbers. */
class AppTypeNames
{
public:
    static constexpr int kCount = 27;

    /** The type a word names: a number 0..26, a printable name or a destination name (exact,
        else ignoring case); -1 when it names none. */
    static int parse(const std::string& word);
    /** "AppRadio" for 5; the number itself for a value outside 0..26. */
    static std::string printable(int type);
    /** The type whose destination name is this endpoint title, or -1. */
    static int typeOfTitle(const juce::String& title);
};

} // namespace LmComTool
