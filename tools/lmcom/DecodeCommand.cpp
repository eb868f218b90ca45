#include "DecodeCommand.h"

#include "Hex.h"
#include "ObjectJson.h"
#include "ObjectTree.h"
#include "UsageError.h"

#include <LmCom.h>

#include "Platform/RegularFile.h"

#include <cstdio>

namespace LmComTool
{

namespace
{
constexpr juce::int64 kMaxInputBytes = 64 * 1024 * 1024;

struct Decoder
{
    const char* kind;
    int (*decode)(const Arguments&, const std::vector<unsigned char>&);
    const char* summary;
};

std::string hexOf(const Parcel::Ptr& parcel)
{
    return Hex::format(parcel->data(), (size_t)parcel->dataSize(), true);
}

const char* groupFunctionName(int groupFunction)
{
    return groupFunction == GF_Request ? "request" : groupFunction == GF_Command ? "command" : "acknowledgement";
}

const char* filedsErrorName(int code)
{
    switch (code)
    {
    case FILEDS_Good:
        return "good";
    case FILEDS_Invalid:
        return "index out of range or value missing";
    case FILEDS_OutOfRange:
        return "value out of range";
    default:
        return "unknown";
    }
}

std::string filedsValueText(const juce::var& value)
{
    if (value.isVoid())
        return "none";
    if (auto* block = value.getBinaryData())
        return Hex::format(static_cast<const unsigned char*>(block->getData()), block->getSize(), true);
    return std::to_string((juce::int64)value);
}

/** Keeps what a car information frame gives, for printing. */
class CarInfoValues : public CarInfoDecoder
{
public:
    std::vector<Value> values;

private:
    void onCarInfoValue(const Value& value) override { values.push_back(value); }
};
} // namespace

const char* const DecodeCommand::kUsage = "lmcom decode parcel|pgn|carinfo HEX|@FILE [--json]";

const char* const DecodeCommand::kHelp =
    "Prints what a byte string holds. INPUT is hex (\"52 4D 53 47 ...\", \"524d5347\") or\n"
    "@FILE for a file's raw bytes (such as Parcel::writeDataToFile writes).\n"
    "\n"
    "  parcel   every object in the bytes, as the monitor prints them (--json: one line\n"
    "           each); bytes left after the objects are shown. Status 1 when none decodes.\n"
    "  pgn      an NMEA 2000 group-function request or command: its head, its fields with\n"
    "           their errors and the acknowledgement bytes; for a failed parse the packet\n"
    "           as far as it was read, with its acknowledgement and negative one. Status 1\n"
    "           when the parse fails.\n"
    "  carinfo  an answer frame of the car's host controller (command, count, data): the\n"
    "           (item, value) pairs the car information application receives, each beside\n"
    "           the bytes it comes from (--json: one object). Status 1 for an empty frame\n"
    "           or a command that is not a car information answer.\n";

std::vector<Arguments::Option> DecodeCommand::options()
{
    return {{"json", false}};
}

std::vector<unsigned char> DecodeCommand::input(const Arguments& arguments, const std::string& text)
{
    std::vector<unsigned char> bytes;
    if (text.empty() || text[0] != '@')
    {
        if (!Hex::parse(text, bytes))
            arguments.fail("INPUT must be hex bytes or @FILE, not '" + text + "'");
        return bytes;
    }
    const std::string path = text.substr(1);
    // The path's own bytes are used: a name need not be UTF-8.
    juce::MemoryBlock block;
    const auto failure = "lmcom: " + arguments.command() + ": ";
    switch (Platform::RegularFile::read(path.c_str(), kMaxInputBytes, block))
    {
    case Platform::RegularFile::Status::read:
        break;
    case Platform::RegularFile::Status::missing:
        throw CommandFailure(failure + "no such file: " + path);
    case Platform::RegularFile::Status::notRegular:
        throw CommandFailure(failure + path + " is not a regular file");
    case Platform::RegularFile::Status::tooLarge:
        throw CommandFailure(failure + path + " is larger than 64 MiB");
    case Platform::RegularFile::Status::failed:
        throw CommandFailure(failure + "cannot read " + path);
    }
    auto* data = static_cast<const unsigned char*>(block.getData());
    bytes.assign(data, data + block.getSize());
    return bytes;
}

int DecodeCommand::run(const Arguments& arguments)
{
    static const Decoder kDecoders[] = {
        {"parcel", &decodeParcel, "objects of a Parcel"},
        {"pgn", &decodePgn, "an NMEA 2000 group-function packet"},
        {"carinfo", &decodeCarInfo, "a car information answer frame"},
    };
    arguments.expectPositionals(2, 2, kUsage);
    const auto& kind = arguments.positionals()[0];
    for (auto& decoder : kDecoders)
        if (kind == decoder.kind)
            return decoder.decode(arguments, input(arguments, arguments.positionals()[1]));
    std::string known;
    for (auto& decoder : kDecoders)
        known += std::string(known.empty() ? "" : ", ") + decoder.kind;
    arguments.fail("unknown kind '" + kind + "' (known: " + known + ")");
}

int DecodeCommand::decodeParcel(const Arguments& arguments, const std::vector<unsigned char>& bytes)
{
    const bool json = arguments.has("json");
    auto parcel = Parcel::obtain();
    parcel->fillData(bytes.data(), (int)bytes.size());
    std::string out;
    int objects = 0;
    while (parcel->dataAvail() > 0)
    {
        const int start = parcel->dataPosition();
        auto object = createFromParcel(parcel.get());
        if (object == nullptr)
            break;
        ++objects;
        const int missing = parcel->dataAvail() < 0 ? -parcel->dataAvail() : 0;
        if (json)
        {
            JsonWriter writer(out);
            writer.beginObject().key("offset").value(start);
            if (missing > 0)
                writer.key("missingBytes").value(missing);
            writer.key("object");
            ObjectJson::write(writer, *object);
            writer.endObject();
            out += "\n";
        }
        else
        {
            ObjectTree::append(out, *object, 0);
            if (missing > 0)
                out += "[truncated: " + std::to_string(missing) + " bytes missing]\n";
        }
    }
    const int left = parcel->dataAvail();
    if (left > 0)
    {
        const auto* rest = parcel->data() + parcel->dataPosition();
        if (json)
        {
            JsonWriter writer(out);
            writer.beginObject().key("offset").value(parcel->dataPosition()).key("undecoded").hex(rest, (size_t)left);
            writer.endObject();
            out += "\n";
        }
        else
            out += "[" + std::to_string(left) + " bytes not decoded at offset " + std::to_string(parcel->dataPosition())
                   + ": " + Hex::format(rest, (size_t)left, true, ObjectTree::kBytesShown) + "]\n";
    }
    std::fwrite(out.data(), 1, out.size(), stdout);
    if (objects == 0)
        throw CommandFailure("lmcom: decode parcel: no object in " + std::to_string(bytes.size()) + " bytes");
    return 0;
}

int DecodeCommand::decodePgn(const Arguments& arguments, const std::vector<unsigned char>& bytes)
{
    if (arguments.has("json"))
        arguments.fail("--json is for decode parcel and carinfo");
    auto parcel = Parcel::obtain();
    parcel->fillData(bytes.data(), (int)bytes.size());
    PGNPacket::Ptr packet;
    const bool parsed = PGNPacket::parse(parcel.get(), packet) != nullptr;
    if (packet == nullptr)
        throw CommandFailure("lmcom: decode pgn: no packet: " + std::to_string(bytes.size())
                             + " bytes do not hold a head (PGN, header, group function, commanded PGN)");

    char line[256];
    std::string out;
    const int groupFunction = packet->getGroupFunction();
    std::snprintf(line, sizeof line, "PGN %d, header %02X %02X: %s (group function %d) for PGN %d", packet->getPGN(),
                  packet->getHeaderByte(0), packet->getHeaderByte(1), groupFunctionName(groupFunction), groupFunction,
                  packet->getCommandPGN());
    out += line;
    if (groupFunction == GF_Request)
        out +=
            ", interval " + std::to_string(packet->getInterval()) + ", offset " + std::to_string(packet->getOffset());
    else if (groupFunction == GF_Command)
        out += ", priority " + std::to_string(packet->getPriority());
    out += "\nfields: " + std::to_string(packet->getFiledsNumber()) + " declared, "
           + std::to_string(packet->getParsedFiledsCount()) + " read\n";
    for (int position = 0; position < packet->getParsedFiledsCount(); ++position)
    {
        const auto* field = packet->getFiledsAt(position);
        if (field == nullptr)
            continue;
        std::snprintf(line, sizeof line, "  [%d] field %d: type %d, flag %d, value ", position, field->m_nIndex,
                      field->m_nType, field->m_nFlag);
        out += line + filedsValueText(field->m_value);
        if (field->m_nErrorCode != FILEDS_Good)
            out += ", error " + std::to_string(field->m_nErrorCode) + " (" + filedsErrorName(field->m_nErrorCode) + ")";
        out += "\n";
    }
    out += "PGN error code " + std::to_string(packet->getPGNErrorCode()) + ", transmit error code "
           + std::to_string(packet->getTransmitErrorCode()) + "\n";
    out += std::string("parse: ")
           + (parsed ? (packet->isValid() ? "succeeded, packet valid" : "succeeded, packet not valid") : "failed")
           + "\n";
    out += "ack: " + hexOf(packet->getAckPacket()) + "\n";
    if (!parsed)
        out += "nack: " + hexOf(packet->getNAckPacket()) + "\n";
    std::fwrite(out.data(), 1, out.size(), stdout);
    return parsed ? 0 : 1;
}

int DecodeCommand::decodeCarInfo(const Arguments& arguments, const std::vector<unsigned char>& bytes)
{
    CarInfoValues decoder;
    const auto result = decoder.procCarInfoMsg(bytes.data(), (int)bytes.size());
    std::string out;
    if (arguments.has("json"))
    {
        JsonWriter writer(out);
        writer.beginObject().key("frame").hex(bytes.data(), bytes.size());
        if (!bytes.empty())
            writer.key("command").value((int)bytes[0]);
        if (result.command != nullptr)
            writer.key("meaning").value(result.command->meaning).key("truncated").value(result.truncated);
        writer.key("values").beginArray();
        for (auto& v : decoder.values)
        {
            writer.beginObject().key("item").value(v.item).key("value").value(v.value).key("offset").value(v.offset);
            writer.key("bytes").hex(bytes.data() + v.offset, (size_t)v.size).endObject();
        }
        writer.endArray().endObject();
        out += "\n";
    }
    else
    {
        char line[160];
        out += "frame: " + Hex::format(bytes.data(), bytes.size(), true) + " (" + std::to_string(bytes.size())
               + " bytes)\n";
        if (result.command != nullptr)
        {
            std::snprintf(line, sizeof line, "command 0x%02X: %s\n", bytes[0], result.command->meaning);
            out += line;
        }
        for (auto& v : decoder.values)
        {
            std::snprintf(line, sizeof line, "  byte %-3d %-6s item %2d = %d\n", v.offset,
                          Hex::format(bytes.data() + v.offset, (size_t)v.size, true).c_str(), v.item, v.value);
            out += line;
        }
        if (result.command != nullptr && decoder.values.empty())
            out += "  no values\n";
        if (result.truncated)
            out += "[the frame ends before a field the command reads: decoded as far as its bytes go]\n";
    }
    std::fwrite(out.data(), 1, out.size(), stdout);
    if (bytes.empty())
        throw CommandFailure("lmcom: decode carinfo: the frame is empty");
    if (result.command == nullptr)
    {
        char hexCode[8];
        std::snprintf(hexCode, sizeof hexCode, "0x%02X", bytes[0]);
        throw CommandFailure(std::string("lmcom: decode carinfo: command ") + hexCode
                             + " is not a car information answer");
    }
    return 0;
}

} // namespace LmComTool
