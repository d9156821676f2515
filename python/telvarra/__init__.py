"""Cameras of five makes through the Telvarra library, from Python.

    import telvarra
    with telvarra.open("DA0001") as cam:
        frame = cam.grab()          # a NumPy array: (height, width) grey, (height, width, 3) colour

Every call goes to the library's C interface (TelvarraApi.h); a refusal raises TelvarraError
with the library's reason.
"""

import ctypes
import os
import sys
import threading
import time
from dataclasses import dataclass

import numpy

__all__ = [
    "TelvarraError",
    "CameraInfo",
    "Camera",
    "MAKES",
    "version",
    "doctor",
    "initialize",
    "shutdown",
    "cameras",
    "open",
]

# The makes by name, as the library numbers them (0: every make).
MAKES = {"any": 0, "mindvision": 1, "hikvision": 2, "dvp": 3, "daheng": 4, "canon": 5}
_MAKE_NAMES = {number: name for name, number in MAKES.items()}

# Ruvo_ImageFormat: channels per pixel of each.
FORMATS = {"mono8": 1, "rgb8": 2, "bgr8": 3, "bayer_gr8": 6, "bayer_rg8": 7, "bayer_gb8": 8,
           "bayer_bg8": 9}
_FORMAT_NAMES = {number: name for name, number in FORMATS.items()}

_TEXT = 256
_ENUM_SYMBOLIC = 144
_MAX_ENUM_ENTRIES = 32
_MAX_FORMATS = 20


class TelvarraError(RuntimeError):
    """A call the library refused; the message is the library's reason."""


class _FormatList(ctypes.Structure):
    _fields_ = [("count", ctypes.c_uint32), ("formats", ctypes.c_int32 * _MAX_FORMATS)]


class _DeviceInfo(ctypes.Structure):
    _fields_ = [("cameraId", ctypes.c_char * _TEXT), ("cameraType", ctypes.c_int32),
                ("vendorName", ctypes.c_char * _TEXT), ("serialNumber", ctypes.c_char * _TEXT),
                ("modelName", ctypes.c_char * _TEXT), ("displayName", ctypes.c_char * _TEXT),
                ("userDefinedName", ctypes.c_char * _TEXT), ("maxWidth", ctypes.c_int32),
                ("maxHeight", ctypes.c_int32), ("supportedFormats", _FormatList),
                ("isAvailable", ctypes.c_bool)]


class _ImageData(ctypes.Structure):
    _fields_ = [("data", ctypes.POINTER(ctypes.c_ubyte)), ("width", ctypes.c_int32),
                ("height", ctypes.c_int32), ("channels", ctypes.c_int32),
                ("format", ctypes.c_int32), ("dataSize", ctypes.c_int32),
                ("timestamp", ctypes.c_int64), ("frameNumber", ctypes.c_int32)]


class _EnumEntry(ctypes.Structure):
    _fields_ = [("value", ctypes.c_int64), ("symbolic", ctypes.c_char * _ENUM_SYMBOLIC)]


class _EnumValue(ctypes.Structure):
    _fields_ = [("current", _EnumEntry), ("count", ctypes.c_uint32),
                ("entries", _EnumEntry * _MAX_ENUM_ENTRIES)]


_FrameCallback = ctypes.CFUNCTYPE(None, ctypes.POINTER(_ImageData), ctypes.c_void_p)


def _library_file():
    named = os.environ.get("TELVARRA_LIBRARY")
    if named:
        return named
    return "Telvarra_X64.dll" if sys.platform == "win32" else "libTelvarra_X64.so"


def _declare(library):
    text, integer, pointer = ctypes.c_char_p, ctypes.c_int, ctypes.POINTER
    signatures = {
        "telvarra_version": (text, []),
        "telvarra_last_error": (text, []),
        "telvarra_initialize": (integer, [integer]),
        "telvarra_shutdown": (None, []),
        "telvarra_doctor": (integer, [ctypes.c_char_p, integer]),
        "telvarra_list_cameras": (integer, [integer, pointer(_DeviceInfo), integer]),
        "telvarra_open": (integer, [text, integer]),
        "telvarra_close": (integer, [text]),
        "telvarra_start": (integer, [text]),
        "telvarra_stop": (integer, [text]),
        "telvarra_status": (integer, [text]),
        "telvarra_is_connected": (integer, [text]),
        "telvarra_frame": (integer, [text, pointer(_ImageData)]),
        "telvarra_set_frame_callback": (integer, [text, _FrameCallback, ctypes.c_void_p]),
        "telvarra_get_format": (integer, [text]),
        "telvarra_set_format": (integer, [text, integer]),
        "telvarra_supported_formats": (integer, [text, pointer(integer), integer]),
        "telvarra_get_mirror": (integer, [text, pointer(integer), pointer(integer)]),
        "telvarra_set_mirror": (integer, [text, integer, integer]),
        "telvarra_get_rotation": (integer, [text, pointer(integer)]),
        "telvarra_set_rotation": (integer, [text, integer]),
        "telvarra_set_zoom": (integer, [text, integer]),
        "telvarra_get_parameter": (integer, [text, text, ctypes.c_char_p, integer]),
        "telvarra_set_parameter": (integer, [text, text, text]),
        "telvarra_get_enum": (integer, [text, text, pointer(_EnumValue)]),
        "telvarra_set_enum": (integer, [text, text, ctypes.c_int64]),
        "telvarra_canon_capture": (integer, [text, integer]),
        "telvarra_config_get": (integer, [text, text, ctypes.c_char_p, integer]),
        "telvarra_config_set": (integer, [text, text, text]),
    }
    for control in ("gain", "exposure", "brightness", "auto_exposure"):
        signatures["telvarra_get_" + control] = (integer, [text, pointer(integer)])
        signatures["telvarra_set_" + control] = (integer, [text, integer])
    for name, (result, arguments) in signatures.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


_library = None
_library_lock = threading.Lock()


def _lib():
    global _library
    with _library_lock:
        if _library is None:
            try:
                _library = _declare(ctypes.CDLL(_library_file()))
            except OSError as error:
                raise TelvarraError(
                    "the Telvarra library could not be loaded (%s); set TELVARRA_LIBRARY to its "
                    "file" % error) from None
        return _library


def _encode(text):
    return text.encode() if isinstance(text, str) else text


def _decode(raw):
    return raw.decode(errors="replace")


def _check(result, failed=0):
    if result == failed:
        raise TelvarraError(_decode(_lib().telvarra_last_error()))
    return result


def _text_from(call, *arguments):
    """A text the library copies out: asked once for its length, then with room for it."""
    length = _check(call(*arguments, None, 0), failed=-1)
    buffer = ctypes.create_string_buffer(length + 1)
    call(*arguments, buffer, length + 1)
    return _decode(buffer.value)


def _make_number(make):
    if isinstance(make, str):
        try:
            return MAKES[make.lower()]
        except KeyError:
            raise ValueError("unknown make %r (one of %s)" % (make, ", ".join(MAKES))) from None
    return int(make)


def version():
    """The library's version text."""
    return _decode(_lib().telvarra_version())


def doctor():
    """What the library finds of each make's SDK: file, place, whether it loads, what it lacks."""
    return _text_from(_lib().telvarra_doctor)


def initialize(make="any"):
    """Starts one make's driver, or every make's; called for you by cameras() and open()."""
    _check(_lib().telvarra_initialize(_make_number(make)))


def shutdown():
    """Closes every camera and stops every driver."""
    _lib().telvarra_shutdown()


@dataclass(frozen=True)
class CameraInfo:
    id: str
    make: str
    vendor: str
    serial_number: str
    model: str
    display_name: str
    user_name: str


def cameras(make="any"):
    """The cameras of one make or of every make that starts, as CameraInfo records."""
    number = _make_number(make)
    _lib().telvarra_initialize(number)  # makes without an SDK are simply not listed
    count = _check(_lib().telvarra_list_cameras(number, None, 0), failed=-1)
    records = (_DeviceInfo * max(count, 1))()
    count = min(_check(_lib().telvarra_list_cameras(number, records, count), failed=-1), count)
    return [CameraInfo(_decode(r.cameraId), _MAKE_NAMES.get(r.cameraType, str(r.cameraType)),
                       _decode(r.vendorName), _decode(r.serialNumber), _decode(r.modelName),
                       _decode(r.displayName), _decode(r.userDefinedName))
            for r in records[:count]]


def open(camera_id, make="any"):  # noqa: A001 - the library's own word for it
    """Opens a camera; use it in a with-block, which closes it at the end."""
    number = _make_number(make)
    _lib().telvarra_initialize(number)
    _check(_lib().telvarra_open(_encode(camera_id), number))
    return Camera(camera_id)


class Camera:
    """An open camera. Frames are pulled by grab(); the controls are properties."""

    def __init__(self, camera_id):
        self.id = camera_id
        self._key = _encode(camera_id)
        self._open = True
        self._capturing = False  # the status cannot tell: some makes keep "acquiring" after a stop
        self._view = None

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def __repr__(self):
        return "<telvarra.Camera %s%s>" % (self.id, "" if self._open else ", closed")

    def close(self):
        if self._open:
            self._open = False
            self._invalidate_view()
            _lib().telvarra_close(self._key)

    # ---- frames

    def start(self):
        _check(_lib().telvarra_start(self._key))
        self._capturing = True

    def stop(self):
        self._invalidate_view()
        self._capturing = False
        _check(_lib().telvarra_stop(self._key))

    @property
    def status(self):
        """0 not open, 1 disconnected, 2 connected, 3 acquiring."""
        return _lib().telvarra_status(self._key)

    @property
    def connected(self):
        return _lib().telvarra_is_connected(self._key) == 1

    def grab(self, copy=True):
        """The next frame as a NumPy array, capture started if it was not.

        With copy=False the array is a view of the camera's own buffer: no copy, but valid only
        until the next grab on this camera (the previous view is marked read-only and empty of
        meaning then; copy what you keep)."""
        if not self._capturing:
            self.start()
        image = _ImageData()
        self._invalidate_view()
        _check(_lib().telvarra_frame(self._key, ctypes.byref(image)))
        shape = (image.height, image.width) if image.channels == 1 else \
            (image.height, image.width, image.channels)
        pixels = numpy.ctypeslib.as_array(image.data, shape=(image.dataSize,))
        frame = pixels[: image.height * image.width * image.channels].reshape(shape)
        if copy:
            return frame.copy()
        self._view = frame
        return frame

    def _invalidate_view(self):
        if self._view is not None:
            self._view.flags.writeable = False
            self._view = None

    # ---- format and geometry

    @property
    def format(self):
        number = _lib().telvarra_get_format(self._key)
        return _FORMAT_NAMES.get(number, "unknown")

    @format.setter
    def format(self, name):
        _check(_lib().telvarra_set_format(self._key, FORMATS[name]))

    @property
    def formats(self):
        room = (ctypes.c_int * _MAX_FORMATS)()
        count = _check(_lib().telvarra_supported_formats(self._key, room, _MAX_FORMATS), -1)
        return [_FORMAT_NAMES.get(room[i], str(room[i])) for i in range(min(count, _MAX_FORMATS))]

    @property
    def mirror(self):
        """(left-right, top-bottom)."""
        left, top = ctypes.c_int(), ctypes.c_int()
        _check(_lib().telvarra_get_mirror(self._key, ctypes.byref(left), ctypes.byref(top)))
        return bool(left.value), bool(top.value)

    @mirror.setter
    def mirror(self, sides):
        left, top = sides
        _check(_lib().telvarra_set_mirror(self._key, int(bool(left)), int(bool(top))))

    @property
    def rotation(self):
        """Quarter turns, 0 to 3."""
        return self._read_int(_lib().telvarra_get_rotation)

    @rotation.setter
    def rotation(self, quarter_turns):
        _check(_lib().telvarra_set_rotation(self._key, int(quarter_turns)))

    def zoom(self, level):
        """Digital zoom: 0 the whole picture, 1 and 2 the centre."""
        _check(_lib().telvarra_set_zoom(self._key, int(level)))

    # ---- exposure controls, in percent of each camera's range

    def _read_int(self, getter):
        value = ctypes.c_int()
        _check(getter(self._key, ctypes.byref(value)))
        return value.value

    gain = property(lambda self: self._read_int(_lib().telvarra_get_gain),
                    lambda self, percent: _check(_lib().telvarra_set_gain(self._key, percent)),
                    doc="Gain in percent, 0 to 100.")
    exposure = property(
        lambda self: self._read_int(_lib().telvarra_get_exposure),
        lambda self, percent: _check(_lib().telvarra_set_exposure(self._key, percent)),
        doc="Exposure in percent, 0 to 100.")
    brightness = property(
        lambda self: self._read_int(_lib().telvarra_get_brightness),
        lambda self, percent: _check(_lib().telvarra_set_brightness(self._key, percent)),
        doc="Brightness in percent, 0 to 100.")
    auto_exposure = property(
        lambda self: bool(self._read_int(_lib().telvarra_get_auto_exposure)),
        lambda self, on: _check(_lib().telvarra_set_auto_exposure(self._key, int(bool(on)))),
        doc="Whether the camera chooses its exposure itself.")

    # ---- named values

    def parameter(self, name):
        return _text_from(_lib().telvarra_get_parameter, self._key, _encode(name))

    def set_parameter(self, name, value):
        _check(_lib().telvarra_set_parameter(self._key, _encode(name), _encode(str(value))))

    def choices(self, name):
        """An enumeration ("GetShutterSpeedIndex" on a Canon body): (current index, [texts])."""
        value = _EnumValue()
        _check(_lib().telvarra_get_enum(self._key, _encode(name), ctypes.byref(value)))
        entries = value.entries[:min(value.count, _MAX_ENUM_ENTRIES)]
        return value.current.value, [_decode(entry.symbolic) for entry in entries]

    def choose(self, name, index):
        """Sets an enumeration by index ("SetShutterSpeedIndex" on a Canon body)."""
        _check(_lib().telvarra_set_enum(self._key, _encode(name), int(index)))

    def config(self, key):
        """A value of the camera's configuration file, or None."""
        length = _lib().telvarra_config_get(self._key, _encode(key), None, 0)
        if length < 0:
            return None
        return _text_from(_lib().telvarra_config_get, self._key, _encode(key))

    def set_config(self, key, value):
        _check(_lib().telvarra_config_set(self._key, _encode(key), _encode(str(value))))

    # ---- Canon bodies

    def still(self, autofocus=False, timeout=10.0):
        """Presses a Canon body's shutter button and returns its still as a NumPy array."""
        stills = []

        def receive(frame, _user):
            image = frame.contents
            size = image.height * image.width * image.channels
            pixels = numpy.ctypeslib.as_array(image.data, shape=(size,))
            stills.append(pixels.reshape(image.height, image.width, image.channels).copy())

        callback = _FrameCallback(receive)  # kept alive here until the still has come
        _check(_lib().telvarra_set_frame_callback(self._key, callback, None))
        try:
            _check(_lib().telvarra_canon_capture(self._key, int(bool(autofocus))))
            deadline = time.monotonic() + timeout
            # The body's events arrive while the library is asked something.
            while not stills and time.monotonic() < deadline and self.connected:
                time.sleep(0.01)
        finally:
            _lib().telvarra_set_frame_callback(self._key, _FrameCallback(), None)
        if not stills:
            raise TelvarraError("camera %s sent no still within %g s" % (self.id, timeout))
        return stills[0]
