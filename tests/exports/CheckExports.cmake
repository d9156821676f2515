# Lists the library's exported names and checks that the exported classes' members are there
# and that internal code is not.
execute_process(COMMAND ${LISTER} ${LIBRARY} OUTPUT_VARIABLE exports RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "could not list the exports of ${LIBRARY}")
endif()

set(required
  _ZN12CameraLogger11getInstanceEv
  _ZN12CameraLogger10setLogFile
  _ZN12CameraLogger11setLogLevel
  _ZN12CameraLogger3logE8LogLevelRKNSt7__cxx1112basic_string
  _ZN12CameraLogger3logE8LogLevelPKc
  _ZN12CameraConfigC1Ev
  _ZN12CameraConfigC1EPKc
  _ZN12CameraConfigC1ERKS_
  _ZN12CameraConfigaSERKS_
  _ZN12CameraConfig10loadConfigEPKc
  _ZN12CameraConfig10saveConfigEPKc
  _ZN12CameraConfig8setValueEPKcS1_
  _ZNK12CameraConfig8getValueEPKcPPc
  _ZNK12CameraConfig6hasKeyEPKc
  _ZNK12CameraConfig13getConfigFileEPPc
  _ZN13CameraFactory11getInstanceEv
  _ZN13CameraFactory14registerDriverE15Ruvo_CameraTypeP13ICameraDriver
  _ZN13CameraFactory9getDriverE15Ruvo_CameraType
  _ZN13CameraFactory13getAllDriversEv
  _ZN13CameraFactory21getInitializedDriversEv
  _ZN13CameraManager12createCameraEPKc15Ruvo_CameraType
  _ZN13CameraManager19enumerateCamerasAllEP22_RUVO_DEVICE_INFO_LIST
  _ZN21CameraPublicInterface11getInstanceEv
  _ZN21CameraPublicInterface15releaseInstanceEv
  _ZN21CameraPublicInterface10openCameraEPKc15Ruvo_CameraType
  _ZN21CameraPublicInterface15getCurrentFrameEPKcR9ImageDatai
  _ZN21CameraPublicInterface28getCameraBrightnessByPercentEPKcRi
  CreateCameraManager DestroyCameraManager InitializeCameraSystem InitializeCameraSystemByType
  CleanupCameraSystem GetCurrentFrame GetCurrentFrameToBuffer ReleaseImageData
  telvarra_version telvarra_last_error telvarra_initialize telvarra_shutdown telvarra_doctor
  telvarra_list_cameras telvarra_open telvarra_frame telvarra_frame_to_buffer
  telvarra_set_frame_callback telvarra_get_enum telvarra_canon_capture telvarra_config_save)
set(missing "")
foreach(name IN LISTS required)
  string(FIND "${exports}" "${name}" found)
  if(found EQUAL -1)
    list(APPEND missing ${name})
  endif()
endforeach()
if(missing)
  message(FATAL_ERROR "not exported: ${missing}")
endif()

foreach(internal mirrorHorizontal rotateQuarterTurns copyBoundedText DynamicLibrary doctorReport
                 lastLoggedProblem)
  string(FIND "${exports}" "${internal}" found)
  if(NOT found EQUAL -1)
    message(FATAL_ERROR "internal code is exported: ${internal}")
  endif()
endforeach()
message(STATUS "exported surface checked: ${LIBRARY}")
