#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""download_logbook.py FILE [OPTION...]: downloads all dives that FILE does not have yet.

The file has one dive a line, in JSON. Options are those of the command, such as --simulate.
"""

import asyncio
import json
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools/python"))
from varda import Varda, VardaError  # noqa: E402


async def download(file: Path, options: list[str]) -> int:
    lines = file.read_text(encoding="utf-8").splitlines() if file.exists() else []
    known = [json.loads(line)["diveNumber"] for line in lines]
    async with Varda(*options) as varda:
        found = await varda.request("scan", seconds=5)
        computers = [each for each in found["devices"] if each["computer"]]
        if not computers:
            print("There is no computer in range.", file=sys.stderr)
            return 1
        computer = max(computers, key=lambda each: int(each["rssi"]))
        print(f"{computer['name']} ({computer['address']})")
        dives = varda.request("dives", computer["address"], known=known, collect=False)
        with file.open("a", encoding="utf-8") as output:
            async for event in dives:
                if event["type"] == "dive":
                    # What is written stays, even if the link is lost now.
                    print(json.dumps(event["dive"]), file=output, flush=True)
                    print(f"dive {event['dive']['diveNumber']}")
        try:
            await dives
        except VardaError as error:
            print(error, error.remedy, sep="\n", file=sys.stderr)
            return 1
    return 0


def main() -> int:
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    return asyncio.run(download(Path(sys.argv[1]), sys.argv[2:]))


if __name__ == "__main__":
    sys.exit(main())
