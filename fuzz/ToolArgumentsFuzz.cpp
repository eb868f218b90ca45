// Any words as the tool's arguments: its option parser, numbers, names and hex input.
#include "AppTypeNames.h"
#include "Arguments.h"
#include "Hex.h"
#include "UsageError.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    // Words are separated by zero bytes, as in a process's argv.
    std::vector<std::string> words;
    std::string word;
    for (size_t i = 0; i < size; ++i)
        if (data[i] == 0)
            words.push_back(std::exchange(word, {}));
        else
            word += (char)data[i];
    words.push_back(word);

    for (const auto& w : words)
    {
        LmComTool::AppTypeNames::parse(w);
        std::vector<unsigned char> bytes;
        LmComTool::Hex::parse(w, bytes);
    }
    try
    {
        const LmComTool::Arguments arguments("post", words, {{"int", true}, {"string", true}, {"json", false}});
        for (const auto& positional : arguments.positionals())
            try
            {
                arguments.toInt(positional, "P1");
            }
            catch (const LmComTool::UsageError&)
            {
            }
        arguments.intOption("int", 0);
    }
    catch (const LmComTool::UsageError&)
    {
    }
    return 0;
}
