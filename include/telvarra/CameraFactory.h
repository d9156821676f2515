// The process-wide registry of vendor drivers, keyed by camera type. It owns the drivers it
// stores and deletes them at unload; it knows nothing of vendors.
#ifndef TELVARRA_CAMERAFACTORY_H
#define TELVARRA_CAMERAFACTORY_H

#include <map>
#include <vector>

#include "telvarra/Export.h"
#include "telvarra/ICameraDriver.h"
#include "telvarra/Types.h"

class TELVARRA_API CameraFactory {
  public:
    static CameraFactory& getInstance();

    // False (and a warning) when the type is taken: the driver is not stored and stays the
    // caller's.
    bool registerDriver(Ruvo_CameraType type, ICameraDriver* driver);
    ICameraDriver* getDriver(Ruvo_CameraType type);
    std::vector<ICameraDriver*> getAllDrivers();
    // Answers only drivers whose registry flag is set, and nothing sets it: callers ask each
    // driver's isInitialized instead.
    std::vector<ICameraDriver*> getInitializedDrivers();

    CameraFactory(const CameraFactory&) = delete;
    CameraFactory& operator=(const CameraFactory&) = delete;

  private:
    CameraFactory();
    ~CameraFactory();

    std::map<Ruvo_CameraType, ICameraDriver*> m_drivers;
    std::map<Ruvo_CameraType, bool> m_initializedFlags;
};

#endif
