"""The Python package over the library's C interface, on simulator cameras."""
import ctypes

import numpy
import pytest

import telvarra


def test_records_have_the_library_layout():
    assert ctypes.sizeof(telvarra._DeviceInfo) == 1636
    assert telvarra._DeviceInfo.supportedFormats.offset == 1548
    assert ctypes.sizeof(telvarra._ImageData) == 48
    assert telvarra._ImageData.timestamp.offset == 32
    assert telvarra._EnumValue.count.offset == 152


def test_cameras_of_every_make_are_listed_and_the_doctor_speaks():
    listed = {camera.id: camera for camera in telvarra.cameras()}
    assert {"PYMONO", "PYCOLOUR", "PYEOS"} <= set(listed)
    assert listed["PYMONO"].make == "hikvision"
    assert listed["PYEOS"].make == "canon"
    assert [camera.id for camera in telvarra.cameras("canon")] == ["PYEOS"]
    report = telvarra.doctor()
    assert "HikVision\n  looks for" in report and "version    4.5.0.3" in report
    assert telvarra.version().count(".") == 2
    with pytest.raises(ValueError):
        telvarra.cameras("leica")


def test_grab_copies_by_default_and_a_view_lasts_until_the_next_grab():
    with telvarra.open("PYMONO", "hikvision") as cam:
        first = cam.grab()
        assert first.shape == (48, 64) and first.dtype == numpy.uint8
        assert cam.status == 3
        view = cam.grab(copy=False)
        kept = view.copy()
        assert not numpy.array_equal(first, kept)  # the pattern moves from frame to frame
        assert view.flags.writeable
        cam.grab()
        assert not view.flags.writeable
        assert numpy.array_equal(kept, kept.copy())
    assert cam.status == 0


def test_geometry_and_controls_read_back():
    with telvarra.open("PYMONO") as cam:
        cam.mirror = (True, False)
        cam.rotation = 1
        assert cam.mirror == (True, False)
        assert cam.rotation == 1
        assert cam.grab().shape == (64, 48)
        cam.rotation = 0
        cam.gain = 50
        assert 49 <= cam.gain <= 51
        cam.auto_exposure = True
        assert cam.auto_exposure is True
        assert cam.formats == ["mono8"]
        with pytest.raises(telvarra.TelvarraError, match="too small to zoom"):
            cam.zoom(1)
        cam.zoom(0)


def test_colour_frames_come_with_three_channels():
    with telvarra.open("PYCOLOUR") as cam:
        assert "rgb8" in cam.formats
        frame = cam.grab()
        assert frame.shape == (60, 80, 3)
        cam.stop()  # formats change between captures
        cam.format = "mono8"
        assert cam.format == "mono8"
        assert cam.grab().shape == (60, 80)


def test_refusals_raise_with_the_library_reason():
    with pytest.raises(telvarra.TelvarraError) as refused:
        telvarra.open("NOSUCH", "hikvision")
    assert str(refused.value)
    with telvarra.open("PYMONO") as cam:
        cam.set_config("Note", "bench 4")
        assert cam.config("Note") == "bench 4"
        assert cam.config("Absent") is None
        with pytest.raises(telvarra.TelvarraError, match="one line"):
            cam.set_config("Note", "x\nsetCameraRotate=3")
        assert cam.parameter("Anything") == "100"


def test_a_canon_body_gives_its_exposure_lists_and_a_still():
    with telvarra.open("PYEOS", "canon") as cam:
        current, speeds = cam.choices("GetISOSpeedIndex")
        assert len(speeds) == 8 and current == 1
        cam.choose("SetISOSpeedIndex", 3)
        assert cam.choices("GetISOSpeedIndex")[0] == 3
        with pytest.raises(telvarra.TelvarraError):
            cam.choose("SetISOSpeedIndex", 8)
        assert cam.grab().shape == (48, 64, 3)
        still = cam.still()
        assert still.shape == (96, 128, 3)
