#include "drivers/daheng/DaHengDevices.h"

namespace telvarra::daheng {

namespace {

constexpr std::uint32_t kRefreshTimeoutMs = 1000;
constexpr std::size_t kBaseInfoCapacity = 255;  // 171360 bytes

}  // namespace

bool refreshDevices(std::uint32_t& count) {
    count = 0;
    return dahengSdk().GXUpdateAllDeviceList(&count, kRefreshTimeoutMs) == sdk::GX_STATUS_SUCCESS;
}

bool readBaseInfo(std::vector<sdk::GX_DEVICE_BASE_INFO>& records) {
    records.assign(kBaseInfoCapacity, sdk::GX_DEVICE_BASE_INFO{});
    std::size_t bytes = records.size() * sizeof(sdk::GX_DEVICE_BASE_INFO);
    return dahengSdk().GXGetAllDeviceBaseInfo(records.data(), &bytes) == sdk::GX_STATUS_SUCCESS;
}

}  // namespace telvarra::daheng
