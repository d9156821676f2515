"""The package against the SDK simulators: a rig of our own, named before the library loads them,
and each test in a folder of its own for the configuration files the library writes."""
import os

import pytest

RIG = """\
hikvision id=PYMONO size=64x48 format=mono8 seed=7
hikvision id=PYCOLOUR size=80x60 format=bayer_rg8
canon id=PYEOS size=64x48
"""


@pytest.fixture(scope="session", autouse=True)
def simulator_rig(tmp_path_factory):
    rig = tmp_path_factory.mktemp("rig") / "cameras.rig"
    rig.write_text(RIG)
    os.environ["TELVARRA_SIM_RIG"] = str(rig)
    yield
    import telvarra
    telvarra.shutdown()


@pytest.fixture(autouse=True)
def own_folder(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
