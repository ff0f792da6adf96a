# SPDX-License-Identifier: MIT
"""Talks to diving computers: `varda serve` for asyncio. Copy this file into your program.

    async with Varda() as varda:
        found = await varda.request("scan", seconds=5)
        address = found["devices"][0]["address"]
        download = varda.request("dives", address, known=[1, 2, 3])
        async for event in download:
            if event["type"] == "dive":
                print(event["dive"]["diveNumber"])
        print(await download)

The methods, their parameters, events and results are described in docs/serve.md.
"""

from __future__ import annotations

import asyncio
import contextlib
import itertools
import json
from typing import Any, AsyncIterator, Dict, Generator, Optional, Sequence

Object = Dict[str, Any]

PROTOCOL = 1
_LONGEST_LINE = 1 << 30  # a result can have a whole logbook


class VardaError(Exception):
    """Why a request has no result."""

    def __init__(self, error: Object) -> None:
        super().__init__(error["text"])
        self.code: str = error["code"]
        """What happened, exactly: "NoAdapter"."""
        self.kind: str = error["kind"]
        """What kind of failure it is: "NoBluetooth"."""
        self.remedy: str = error["remedy"]
        """What the user can do about it; may be empty."""
        self.outcome_unknown: bool = error["outcomeUnknown"]
        """Whether the computer may have done it all the same."""


def _ended(text: str) -> VardaError:
    return VardaError({"code": "ServeEnded", "kind": "Cancelled", "text": text, "remedy": "",
                       "outcomeUnknown": True})


class Request:
    """A request under way. Await it for its result; iterate over it for its events.

    It runs whether or not somebody waits. Whoever is cancelled while awaiting it cancels it.
    """

    def __init__(self, varda: Varda, number: int) -> None:
        self.id = number
        self._varda = varda
        self._events: asyncio.Queue[Optional[Object]] = asyncio.Queue()
        self._end: asyncio.Future[Object] = asyncio.get_running_loop().create_future()
        # A failure that nobody waits for is none.
        self._end.add_done_callback(lambda end: end.cancelled() or end.exception())

    def cancel(self) -> None:
        """Asks for its end, which comes soon: a VardaError of kind "Cancelled", or a result."""
        if not self._end.done():
            self._varda.request("cancel", request=self.id)

    def __await__(self) -> Generator[Any, None, Object]:
        return self._wait().__await__()

    async def __aiter__(self) -> AsyncIterator[Object]:
        while True:
            event = await self._events.get()
            if event is None:
                self._events.put_nowait(None)  # for whoever iterates again
                return
            yield event

    async def _wait(self) -> Object:
        try:
            return await asyncio.shield(self._end)
        except asyncio.CancelledError:
            self.cancel()
            raise

    def _take(self, line: Object) -> bool:
        """Whether it was the last one."""
        if line["type"] == "result":
            self._finish(line["result"])
        elif line["type"] == "error":
            self._finish(VardaError(line["error"]))
        else:
            self._events.put_nowait(line)
        return self._end.done()

    def _finish(self, end: Object | VardaError) -> None:
        self._events.put_nowait(None)
        if self._end.done():
            return
        if isinstance(end, VardaError):
            self._end.set_exception(end)
        else:
            self._end.set_result(end)


class Varda:
    """A running `varda serve`, from `async with` to its end, where all computers are let go."""

    def __init__(self, *options: str, program: Sequence[str] = ("varda",)) -> None:
        """Options of the command, such as "--simulate"; the program is found in the PATH."""
        self._command = [*program, *options, "serve"]
        self._numbers = itertools.count(1)
        self._requests: Dict[int, Request] = {}
        self._end: Optional[VardaError] = None
        self.hello: Object = {}

    async def __aenter__(self) -> Varda:
        pipe = asyncio.subprocess.PIPE
        self._process = await asyncio.create_subprocess_exec(
            *self._command, stdin=pipe, stdout=pipe, limit=_LONGEST_LINE)
        assert self._process.stdin and self._process.stdout
        self._input, self._output = self._process.stdin, self._process.stdout
        with contextlib.suppress(ValueError):
            self.hello = json.loads(await self._output.readline())
        if self.hello.get("protocol") != PROTOCOL:
            await self._close()
            raise _ended(f"{self._command[0]} does not serve protocol {PROTOCOL}")
        self._reading = asyncio.create_task(self._read())
        return self

    async def __aexit__(self, *_: object) -> None:
        await self._close()
        await self._reading

    def request(self, method: str, computer: Optional[str] = None, /, **params: Any) -> Request:
        """Begins a request: a method, the address of a computer, and the method's parameters."""
        request = Request(self, next(self._numbers))
        if self._end:
            request._finish(self._end)
            return request
        self._requests[request.id] = request
        line: Object = {"id": request.id, "method": method, "params": params}
        if computer is not None:
            line["computer"] = computer
        self._input.write(json.dumps(line).encode() + b"\n")
        return request

    async def _close(self) -> None:
        with contextlib.suppress(BrokenPipeError, ConnectionResetError):
            self._input.close()
            await self._input.wait_closed()
        await self._process.wait()

    async def _read(self) -> None:
        while line := await self._output.readline():
            answer: Object = json.loads(line)
            request = self._requests.get(answer["id"])
            if request and request._take(answer):
                del self._requests[request.id]
        self._end = _ended(f"{self._command[0]} has ended")
        for request in self._requests.values():
            request._finish(self._end)
        self._requests.clear()
