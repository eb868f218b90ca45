#include "main/applicationapi/CarInfoDecoder.h"

namespace
{
using Field = CarInfoDecoder::Field;
using Layout = CarInfoDecoder::Layout;

constexpr int kDataStart = 2;
constexpr int kMeterStatusStart = 7; // in the meter answer's data: frame byte 9

constexpr Field kMeterFields[] = {{0, 0, 1, -1}, {6, 1, 2, -1}, {7, 3, 2, -1}, {8, 5, 1, -1}, {9, 6, 1, -1}};
constexpr Field kStatusFields[] = {{10, 0, 1, -1}, {11, 1, 1, -1}, {12, 2, 2, -1}, {13, 4, 2, -1},
                                   {14, 6, 2, -1}, {15, 8, 2, -1}, {16, 10, 1, 1}};
constexpr Field kPressureFields[] = {{6, 0, 2, -1}, {7, 2, 2, -1}};
constexpr Field kCompassFields[] = {{0, 0, 1, -1}};
constexpr Field kCompassStudyFields[] = {{1, 0, 1, -1}};
constexpr Field kCompassOffsetFields[] = {{3, 0, 1, -1}};
constexpr Field kAirPressureFields[] = {{6, 0, 2, -1}};
constexpr Field kElevationFields[] = {{7, 0, 2, -1}};
constexpr Field kTemperatureFields[] = {{8, 0, 1, -1}, {9, 1, 1, -1}};

#define LMCOM_FIELDS(list) list, (int)(sizeof list / sizeof list[0])

// What each answer posts; CarInfoApi and lmcom both decode with it.
const CarInfoDecoder::Command kCommands[] = {
    {0x00, Layout::meter, "meter readings and vehicle status", 0, 0, 0, LMCOM_FIELDS(kMeterFields)},
    {0x10, Layout::fields, "compass direction", 0, 0, 0, LMCOM_FIELDS(kCompassFields)},
    {0x11, Layout::fields, "compass direction", 0, 0, 0, LMCOM_FIELDS(kCompassFields)},
    {0x12, Layout::fields, "compass learning", 0, 0, 0, LMCOM_FIELDS(kCompassStudyFields)},
    {0x13, Layout::acknowledge, "compass left", 2, 0, 0, nullptr, 0},
    {0x14, Layout::fields, "compass offset", 0, 0, 0, LMCOM_FIELDS(kCompassOffsetFields)},
    {0x15, Layout::acknowledge, "compass offset set", 4, 0, 0, nullptr, 0},
    {0x20, Layout::pressure, "air pressure and elevation", 0, 0, 0, LMCOM_FIELDS(kPressureFields)},
    {0x21, Layout::pressure, "air pressure and elevation", 0, 0, 0, LMCOM_FIELDS(kPressureFields)},
    {0x22, Layout::acknowledge, "air pressure set", 5, 0, 0, nullptr, 0},
    {0x23, Layout::fields, "air pressure reset", 0, 0, 0, LMCOM_FIELDS(kAirPressureFields)},
    {0x24, Layout::fields, "elevation changed", 0, 0, 0, LMCOM_FIELDS(kElevationFields)},
    {0x25, Layout::fields, "elevation changed", 0, 0, 0, LMCOM_FIELDS(kElevationFields)},
    {0x30, Layout::fields, "outside temperature", 0, 0, 0, LMCOM_FIELDS(kTemperatureFields)},
    {0x31, Layout::fields, "outside temperature", 0, 0, 0, LMCOM_FIELDS(kTemperatureFields)},
    {0x40, Layout::status, "CAN data: vehicle status", 0, 0, 0, LMCOM_FIELDS(kStatusFields)},
    {0x41, Layout::status, "CAN data: vehicle status", 0, 0, 0, LMCOM_FIELDS(kStatusFields)},
    {0x42, Layout::acknowledge, "maintenance hint cleared", 17, 0, 0, nullptr, 0},
    {0x43, Layout::acknowledge, "middle oil consumption reset", 18, 0, 0, nullptr, 0},
    {0x44, Layout::acknowledge, "middle car speed reset", 19, 0, 0, nullptr, 0},
    {0x60, Layout::wheel, "wheel data", 0, NEED_CAL_WHEEL_DATA, 0, nullptr, 0},
    {0x61, Layout::wheel, "wheel data", 0, NEED_CAL_WHEEL_DATA, 0, nullptr, 0},
    {0x62, Layout::selector, "wheel learning entered", 34, 1, 5, nullptr, 0},
    {0x63, Layout::selector, "wheel deleted, next wheel learning", 39, 1, 5, nullptr, 0},
    {0x64, Layout::selector, "wheel learning skipped to", 44, 1, 5, nullptr, 0},
    {0x65, Layout::acknowledge, "wheel learning left", 50, 0, 0, nullptr, 0},
    {0x66, Layout::selector, "wheel pressure learning", 50, 1, 5, nullptr, 0},
    {0x67, Layout::acknowledge, "wheel pressure learning left", 56, 0, 0, nullptr, 0},
    {0x68, Layout::nothing, "no values", 0, 0, 0, nullptr, 0},
    {0x69, Layout::lowPressurePercent, "low-pressure percent", 57, 3, 9, nullptr, 0},
    {0x6A, Layout::lowPressurePercent, "low-pressure percent set", 57, 3, 9, nullptr, 0},
    {0x6B, Layout::selector, "front and rear wheels swapped", 57, 1, 2, nullptr, 0},
    {0x6C, Layout::selector, "wheel swapped with the spare", 59, 1, 4, nullptr, 0},
    {0x6D, Layout::wheel, "wheel test mode", 0, NEED_CAL_TEST_MODE, 0, nullptr, 0},
    {0x90, Layout::selector, "host notice", 63, 1, 1, nullptr, 0},
};
#undef LMCOM_FIELDS

constexpr int kCommandCount = (int)(sizeof kCommands / sizeof kCommands[0]);

// Items of the wheels by the frame's wheel number 1..5; 3 and 4 crossed on purpose.
constexpr int kWheelAlarmItem[] = {65, 66, 68, 67, 69};
constexpr int kWheelFirstItem[] = {20, 23, 29, 26, 32};
constexpr int kWheelCount = 5;
constexpr int kAlarmBit = 0x20;
// Two-bit wheel states 0..3 as the application counts them.
constexpr int kTwoBitState[] = {1, 2, 3, 0};
} // namespace

const CarInfoDecoder::Command* CarInfoDecoder::commands(int& count)
{
    count = kCommandCount;
    return kCommands;
}

const CarInfoDecoder::Command* CarInfoDecoder::findCommand(int code)
{
    for (const auto& command : kCommands)
        if (command.code == code)
            return &command;
    return nullptr;
}

CarInfoDecoder::Result CarInfoDecoder::procCarInfoMsg(const unsigned char* frame, int length)
{
    m_result = {};
    if (frame == nullptr || length < 1)
        return m_result;
    const Command* command = findCommand(frame[0]);
    if (command == nullptr)
        return m_result;
    m_result.command = command;
    m_pFrame = frame;

    const int dataLength = length > kDataStart ? length - kDataStart : 0;
    const unsigned char* data = frame + (length > kDataStart ? kDataStart : length);
    int selector = 0;
    switch (command->layout)
    {
    case Layout::fields:
        decodeFields(data, dataLength, command->fields, command->fieldCount);
        break;
    case Layout::meter:
        decodeFields(data, dataLength, command->fields, command->fieldCount);
        if (!m_result.truncated)
            Car_Status_Process(data + kMeterStatusStart, dataLength - kMeterStatusStart);
        break;
    case Layout::status:
        Car_Status_Process(data, dataLength);
        break;
    case Layout::pressure:
        Pressure_Alititute_Process(data, dataLength);
        break;
    case Layout::wheel:
        Wheel_Data_Process(data, dataLength, (UINT_NEED_CAL_FLAG)command->first);
        break;
    case Layout::selector:
        if (readByte(data, dataLength, 0, selector) && selector >= command->first && selector <= command->last)
            post(command->item + selector, 0, data, 1);
        break;
    case Layout::lowPressurePercent:
        if (readByte(data, dataLength, 0, selector) && selector >= command->first && selector <= command->last)
            post(command->item, 60 + 5 * (selector - command->first), data, 1);
        break;
    case Layout::acknowledge:
        post(command->item, 0, frame, 1);
        break;
    case Layout::nothing:
        break;
    }
    m_pFrame = nullptr;
    return m_result;
}

void CarInfoDecoder::Car_Status_Process(const unsigned char* data, int length)
{
    decodeFields(data, length, kStatusFields, (int)(sizeof kStatusFields / sizeof kStatusFields[0]));
}

void CarInfoDecoder::Pressure_Alititute_Process(const unsigned char* data, int length)
{
    decodeFields(data, length, kPressureFields, (int)(sizeof kPressureFields / sizeof kPressureFields[0]));
}

void CarInfoDecoder::Wheel_Data_Process(const unsigned char* data, int length, UINT_NEED_CAL_FLAG flag)
{
    int wheel = 0;
    int state = 0;
    if (!readByte(data, length, 0, wheel) || wheel < 1 || wheel > kWheelCount)
        return;
    if (!readByte(data, length, 1, state))
        return;
    const int alarm = (state & kAlarmBit) != 0 ? 1 : 0;
    post(kWheelAlarmItem[wheel - 1], alarm, data + 1, 1);
    if (alarm != 0)
        return;

    const int a = kTwoBitState[state & 3];
    const int b = kTwoBitState[(state >> 2) & 3];
    const int c = (state & 0x10) != 0 ? 2 : 1;
    const int item = kWheelFirstItem[wheel - 1];
    post(item, (a << 24) | (b << 16) | (c << 8) | (int)flag, data + 1, 1);
    int value = 0;
    for (int i = 0; i < 2; ++i)
    {
        if (!readByte(data, length, 2 + i, value))
            return;
        post(item + 1 + i, value, data + 2 + i, 1);
    }
}

void CarInfoDecoder::decodeFields(const unsigned char* data, int length, const Field* fields, int count)
{
    for (int i = 0; i < count; ++i)
    {
        const Field& field = fields[i];
        if (length < 0 || field.offset + field.size > length)
        {
            m_result.truncated = true;
            return;
        }
        int value = 0;
        for (int k = 0; k < field.size; ++k)
            value = value * 256 + data[field.offset + k];
        if (field.mask != -1)
            value &= field.mask;
        post(field.item, value, data + field.offset, field.size);
    }
}

bool CarInfoDecoder::readByte(const unsigned char* data, int length, int index, int& out)
{
    if (index >= length)
    {
        m_result.truncated = true;
        return false;
    }
    out = data[index];
    return true;
}

void CarInfoDecoder::post(int item, int value, const unsigned char* at, int size)
{
    ++m_result.values;
    const int offset = m_pFrame != nullptr ? (int)(at - m_pFrame) : 0;
    onCarInfoValue({item, value, offset, size});
}
