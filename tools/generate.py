#!/usr/bin/env python3
"""Entry point of the code generator; see tools/tvgen/__main__.py."""
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
from tvgen.__main__ import main  # noqa: E402

sys.exit(main())
