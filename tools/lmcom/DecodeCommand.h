#pragma once

#include "Arguments.h"

#include <vector>

namespace LmComTool
{

/** "lmcom decode KIND INPUT": prints what a byte string holds. Kinds: "parcel" (the objects
    of a Parcel, as the monitor shows them), "pgn" (an NMEA 2000 group-function packet and
    its acknowledgement) and "carinfo" (a car information answer frame). Further kinds are added to the table in the
   source. */
class DecodeCommand
{
public:
    static const char* const kUsage;
    static const char* const kHelp;
    static std::vector<Arguments::Option> options();
    static int run(const Arguments& arguments);

    /** The bytes of INPUT: hex text, or "@FILE" for a file's raw bytes (at most 64 MiB). */
    static std::vector<unsigned char> input(const Arguments& arguments, const std::string& text);

private:
    static int decodeParcel(const Arguments& arguments, const std::vector<unsigned char>& bytes);
    static int decodePgn(const Arguments& arguments, const std::vector<unsigned char>& bytes);
    static int decodeCarInfo(const Arguments& arguments, const std::vector<unsigned char>& bytes);
};

} // namespace LmComTool
