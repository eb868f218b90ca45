#pragma once

// LmCom: the communication library of the head unit's application processes.
// This header is the whole exported interface.

#include "AppIdentity.h"
#include "LmComEntry.h"
#include "LogBridge.h"
#include "Pubhead.h"

#include "Message/AppCommandLine.h"
#include "Message/AppMessage.h"
#include "Message/BroadcastReceiver.h"
#include "Message/Bundle.h"
#include "Message/CmdLineHelper.h"
#include "Message/IMsgProc.h"
#include "Message/MessageHelper.h"
#include "Message/MsgSession.h"
#include "Message/Parcel.h"
#include "Message/Parcelable.h"
#include "Message/ParcelableArray.h"
#include "Message/RemoteMessage.h"
#include "Message/RemoteObjFormat.h"

#include "main/applicationapi/AppCmdCallBack.h"
#include "main/applicationapi/AppCmdHelper.h"
#include "main/applicationapi/AppServiceApi.h"
#include "main/applicationapi/AppServiceCallBack.h"
#include "main/applicationapi/GeneralResponse.h"
#include "main/applicationapi/GeneralService.h"
#include "main/applicationapi/InfoBT.h"
#include "main/applicationapi/InfoMedia.h"
#include "main/applicationapi/InfoSatRadio.h"
#include "main/applicationapi/InfoSource.h"
#include "main/applicationapi/InfoTuner.h"
#include "main/applicationapi/MainServiceManager.h"
#include "main/applicationapi/PlayInfo.h"
#include "main/applicationapi/ServiceCodes.h"
#include "main/applicationapi/ViewCallBack.h"

#include "Navico/NavicoHelper.h"
#include "Navico/PGNHelper.h"
#include "Navico/PGNPacket.h"

#include "Utils/AppConfig.h"
#include "Utils/CMultiCharacter.h"
#include "Utils/CorvaneConfig.h"
