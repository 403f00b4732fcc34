"""The README's Python example (docs/example.py) runs as shown and gives
sensible quality figures on the photograph."""
import os
import re
import subprocess
import sys

import pytest

EXAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "example.py")


def test_readme_python_example_runs():
    if not os.path.exists("/usr/lib/python3/dist-packages/skimage/data/astronaut.png"):
        pytest.skip("python3-skimage is not installed")
    out = subprocess.run([sys.executable, EXAMPLE], capture_output=True, text=True, check=True).stdout
    psnr = [float(x) for x in re.findall(r"PSNR ([0-9.]+) dB", out)]
    assert len(psnr) == 3 and min(psnr) > 30, out
