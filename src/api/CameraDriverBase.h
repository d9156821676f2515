// What every driver shares: the initialised flag, kept as the first field, and its accessor.
#ifndef TELVARRA_API_CAMERADRIVERBASE_H
#define TELVARRA_API_CAMERADRIVERBASE_H

#include "telvarra/ICameraDriver.h"

namespace telvarra {

class CameraDriverBase : public ICameraDriver {
  public:
    bool isInitialized() override { return m_initialized; }

  protected:
    bool m_initialized = false;
};

}  // namespace telvarra

#endif
