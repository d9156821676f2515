// Everything a host includes to use Telvarra.
#ifndef TELVARRA_TELVARRA_H
#define TELVARRA_TELVARRA_H

#include "telvarra/Export.h"
#include "telvarra/TelvarraApi.h"
#include "telvarra/TelvarraC.h"
#include "telvarra/Types.h"

#ifdef __cplusplus
#include "telvarra/CameraConfig.h"
#include "telvarra/CameraFactory.h"
#include "telvarra/CameraLogger.h"
#include "telvarra/CameraManager.h"
#include "telvarra/CameraPublicInterface.h"
#include "telvarra/ICamera.h"
#include "telvarra/ICameraDriver.h"
#endif

#endif
