#pragma once

#include <cstddef>

/** Which kind of wheel frame Wheel_Data_Process decodes. The value reaches the application in
    the low byte of the wheel state item. (The name is the established one, kept on purpose.) */
enum UINT_NEED_CAL_FLAG
{
    NEED_CAL_WHEEL_DATA = 1, ///< the wheel data answers, commands 0x60 and 0x61
    NEED_CAL_TEST_MODE = 2   ///< the test-mode answer, command 0x6D
};

/** Decodes the answer frames of the car's host controller into (item, value) pairs.

    A frame is: byte 0 the command, byte 1 a data count (not examined), then the data; 16-bit
    quantities are big-endian. One table (commands()) says what each command posts. A frame
    shorter than a field needs is decoded up to the last whole field and never read past; bytes
    beyond what a command defines are ignored; unknown commands and selectors out of range post
    nothing. Values are passed on raw: their units are the host controller's.

    A derived class receives the values through onCarInfoValue, in frame order (CarInfoApi hands
    them to the application; lmcom prints them). Any thread; one frame at a time per object.
*/
class CarInfoDecoder
{
public:
    /** How a command's data turns into values. */
    enum class Layout
    {
        fields,             ///< fixed fields: the command's field list, from byte 2
        meter,              ///< meter fields, then the vehicle status block from byte 9
        status,             ///< the vehicle status block from byte 2 (Car_Status_Process)
        pressure,           ///< air pressure and elevation from byte 2 (Pressure_Alititute_Process)
        wheel,              ///< one wheel record from byte 2 (Wheel_Data_Process)
        selector,           ///< byte 2 in [first, last] posts (item + byte 2, 0)
        lowPressurePercent, ///< byte 2 in [3, 9] posts (item, 60 + 5 x (byte 2 - 3))
        acknowledge,        ///< (item, 0), whatever the data
        nothing             ///< a known answer without values
    };

    /** One field of a fixed layout: bytes [offset, offset + size) of the data, big-endian. */
    struct Field
    {
        int item;
        int offset;
        int size; ///< 1 or 2
        int mask; ///< applied to the value; -1 keeps it whole
    };

    /** One answer command. item and first/last mean what the layout says; a wheel command
        keeps its UINT_NEED_CAL_FLAG in first. */
    struct Command
    {
        int code;
        Layout layout;
        const char* meaning;
        int item;
        int first;
        int last;
        const Field* fields;
        int fieldCount;
    };

    /** A decoded value and the bytes of the frame it comes from (the command byte for an
        answer whose value is fixed). */
    struct Value
    {
        int item;
        int value;
        int offset;
        int size;
    };

    /** What one frame gave. */
    struct Result
    {
        const Command* command = nullptr; ///< null for an empty frame or an unknown command
        int values = 0;                   ///< values posted
        bool truncated = false;           ///< the frame ended before a field it needs
    };

    virtual ~CarInfoDecoder() = default;

    /** Every answer command, in code order. */
    static const Command* commands(int& count);
    /** The command of that code, or null. */
    static const Command* findCommand(int code);

    /** Decodes one frame (null or a length under 1 decodes nothing) and calls onCarInfoValue
        for each value. */
    Result procCarInfoMsg(const unsigned char* frame, int length);

protected:
    CarInfoDecoder() = default;
    CarInfoDecoder(const CarInfoDecoder&) = default;
    CarInfoDecoder& operator=(const CarInfoDecoder&) = default;

    virtual void onCarInfoValue(const Value& value) = 0;

    /** The vehicle status block (11 bytes): items 10 to 16. */
    void Car_Status_Process(const unsigned char* data, int length);
    /** Air pressure and elevation: (6, bytes 0-1), (7, bytes 2-3). The misspelling is the
        established name, kept on purpose. */
    void Pressure_Alititute_Process(const unsigned char* data, int length);
    /** One wheel record (wheel number, state bits, two values). Wheels 3 and 4 of the frame are
        crossed on purpose in the items, which run front left, front right, rear left, rear
        right, spare while the frame numbers the rear right wheel 3. */
    void Wheel_Data_Process(const unsigned char* data, int length, UINT_NEED_CAL_FLAG flag);

private:
    void decodeFields(const unsigned char* data, int length, const Field* fields, int count);
    bool readByte(const unsigned char* data, int length, int index, int& out);
    void post(int item, int value, const unsigned char* at, int size);

    const unsigned char* m_pFrame = nullptr;
    Result m_result;
};
