#pragma once

#include "Pubhead.h"

#include <juce_core/juce_core.h>

/** The head unit's settings store ("LmShareMem"), shared by every process of a bus.

    System-information values and source states live in shared memory: a write is seen by every
    process at once. Setup values live in a file under the file-system root
    ("/NandFlash/Application/Profile/QN_SetupValues.txt"), replaced as a whole on each write; a
    process sees another's write on its next read. The meanings of the slots are those that
    application code gives them.

    Failures give 0, false or "" and one line through the log bridge (tag "LmShareMem"): an
    index outside the store (nothing is read or written outside it), a store of another layout
    (refused, never read), a setup file that cannot be read or written. An item that was never
    set is not a failure: it reads as 0, "" and not text. Any thread.
*/

/** System-information slots: 0 to SysInfoCount - 1. */
enum SysInfoIndex : int
{
    SysInfoCount = 256
};

/** Setup items: 0 to SetupCount - 1. */
enum SetupIndex : int
{
    SetupCount = 512
};

/** The value of a system-information slot. */
int QN_GetSysInfo(SysInfoIndex index);
/** Stores a system-information value, seen by every process at once. */
void QN_SetSysInfo(SysInfoIndex index, int value);
/** Whether a source (a service type) is available. */
bool QN_GetSrcState(Pubhead::eAppServiceType::EnumTypeTag source);
/** The number of a setup item; 0 when it holds text or was never set. */
int QN_GetSetupValueInt(SetupIndex index);
/** The text of a setup item; "" when it holds a number or was never set. */
juce::String QN_GetSetupValueString(SetupIndex index);
/** Whether a setup item holds text. */
bool QN_IsSetupValueString(SetupIndex index);

/** Writers for the main service and tools; false (with a log line) when nothing was stored. */
bool QN_SetSrcState(Pubhead::eAppServiceType::EnumTypeTag source, bool available);
bool QN_SetSetupValueInt(SetupIndex index, int value);
/** Text of at most 1024 bytes in UTF-8. */
bool QN_SetSetupValueString(SetupIndex index, const juce::String& value);
