// A flat key=value store bound to one file. Keys are ordered byte-wise; values are opaque text.
// Text handed back is copied into the caller's buffer, which must hold at least 255 bytes; a
// value or path of 255 characters or more is refused rather than truncated.
#ifndef TELVARRA_CAMERACONFIG_H
#define TELVARRA_CAMERACONFIG_H

#include <map>
#include <string>

#include "telvarra/Export.h"

class TELVARRA_API CameraConfig {
  public:
    CameraConfig();
    // Binds the store to `configFile` and loads it; a missing file leaves it empty (and logs).
    explicit CameraConfig(const char* configFile);
    CameraConfig(const CameraConfig& other);
    CameraConfig& operator=(const CameraConfig& other);
    virtual ~CameraConfig();

    // An empty path uses the path stored before; a non-empty one replaces it.
    bool loadConfig(const char* configFile);
    bool saveConfig(const char* configFile);

    void setValue(const char* key, const char* value);
    bool getValue(const char* key, char** value) const;
    bool hasKey(const char* key) const;
    bool getConfigFile(char** configFile) const;

  private:
    bool chooseFile(const char* configFile);

    std::string m_configFile;
    std::map<std::string, std::string> m_values;
};

#endif
