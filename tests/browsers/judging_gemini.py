#!/usr/bin/env python3
"""The stand-in for Gemini that judges pages: "on_task" and "off_task" are scenarios too."""

import json
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "support" / "gemini"))

import gemini_stand_in  # noqa: E402

for verdict, reason in (("on_task", "It serves the goals."), ("off_task", "It is a game.")):
    text = json.dumps({"verdict": verdict, "confidence": 0.95, "reason": reason})
    gemini_stand_in.SCENARIOS[verdict] = gemini_stand_in.response(
        gemini_stand_in.candidate(text), "200 OK", "Content-Type: application/json")

if __name__ == "__main__":
    gemini_stand_in.main()
