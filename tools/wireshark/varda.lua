-- SPDX-License-Identifier: MIT
-- Shows in Wireshark what diving computers and programs say to each other over Bluetooth LE.
-- docs/traces.md says where to copy it.

-- Newer Lua has operators for bits, which older Lua cannot even read.
local bits = bit32 or load([[return {
    band = function(a, b) return a & b end,
    bxor = function(a, b) return a ~ b end,
}]])()

local varda = Proto("varda", "Varda diving computer")
local credits = Proto("varda_credits", "Varda flow control")

local kDataUuids = {
    "49535343-1e4d-4bd9-ba61-23c647249616",
    "2456e1b9-26e2-8f83-e744-f34f01e9d703",
}
local kCreditsUuid = "2456e1b9-26e2-8f83-e744-f34f01e9d704"

local kHeaderSize = 8

local kCommands = {
    [0] = "Sync", [1] = "Identification", [2] = "Syslog", [3] = "Serialnumber",
    [4] = "Set_serialnumber", [5] = "Computer", [6] = "Set_computer", [7] = "Time",
    [8] = "Set_time", [9] = "Sensors", [10] = "Set_sensors", [11] = "Dive", [12] = "Samples",
    [13] = "Begin_program", [14] = "Program", [15] = "End_program", [16] = "Factoryreset",
    [17] = "Diver", [18] = "Set_diver", [19] = "Logbook", [20] = "Fullsamples", [22] = "Owner",
    [23] = "Set_owner", [24] = "Computer_new", [25] = "DeleteLastDive", [26] = "EraseDives",
    [27] = "EraseDivesFlash", [28] = "SimulParams", [29] = "SyslogBin", [30] = "BeginUpdate",
    [31] = "ProgramUpdate", [32] = "EndUpdate", [33] = "BootloaderVersion", [34] = "GetGases",
    [35] = "MarloSet", [36] = "LayoutList", [37] = "LayoutGet", [38] = "LayoutAdd",
    [39] = "LayoutRemove", [40] = "LayoutRemoveAll", [41] = "LayoutActiveGet",
    [42] = "LayoutActiveSet", [237] = "BatteryInformationClear", [238] = "BatteryInformation",
    [252] = "SuperUserMode", [253] = "CleanNvram", [254] = "Reset", [255] = "Close",
}
local kModels = { [0] = "Unknown", [1] = "Varda", [2] = "Tidemar", [3] = "VSKM" }
local kModes = { [1] = "Normal", [2] = "BootLoader" }
local kAccepted = { [0] = "refused" }
local kMagics = { [0xDEADBEEF] = "firmware", [0x424F4F54] = "boot loader" }
local kWaterTypes = { [0] = "sea", [1] = "fresh", [2] = "between" }
local kBatteries = { [0] = "Alcaline", [1] = "NiMH", [2] = "Lion36" }

-- Fields: each is declared where it is first named, then shared by all layouts that name it.

local fields = {}

local function declare(kind, name, label, ...)
    if not fields[name] then
        fields[name] = ProtoField[kind]("varda." .. name, label or name, ...)
    end
    return name
end

declare("framenum", "request_in", "Request in", base.NONE, frametype.REQUEST)
declare("framenum", "fragment", "Part in", base.NONE)
declare("framenum", "whole_in", "Whole in", base.NONE)
declare("double", "time", "Seconds since the request")
declare("bool", "request", "Request")
declare("bytes", "part", "Part of a frame")
declare("uint16", "start", "Start", base.HEX)
declare("uint16", "length", "Length of the body", base.DEC)
declare("uint16", "crc", "Checksum", base.HEX)
declare("bool", "crc.good", "Checksum is right")
declare("bytes", "reserved", "Reserved")
declare("uint8", "command", "Command", base.DEC, kCommands)
declare("bytes", "payload", "Payload")
declare("bytes", "unknown", "Not known")
declare("bool", "end", "End of the answer")

local experts = {
    crc = ProtoExpert.new("varda.crc.bad", "The checksum is wrong", expert.group.CHECKSUM,
        expert.severity.ERROR),
    start = ProtoExpert.new("varda.start.none", "These bytes begin no frame",
        expert.group.PROTOCOL, expert.severity.ERROR),
    cut = ProtoExpert.new("varda.cut", "The frame before this has no end",
        expert.group.REASSEMBLE, expert.severity.WARN),
    open = ProtoExpert.new("varda.open", "The frame has no end", expert.group.REASSEMBLE,
        expert.severity.WARN),
    empty = ProtoExpert.new("varda.empty", "The frame has no command", expert.group.PROTOCOL,
        expert.severity.ERROR),
    command = ProtoExpert.new("varda.command.unknown", "The command is not known",
        expert.group.UNDECODED, expert.severity.WARN),
    short = ProtoExpert.new("varda.short", "The payload is shorter than its layout",
        expert.group.PROTOCOL, expert.severity.WARN),
    refused = ProtoExpert.new("varda.refused", "The computer refuses", expert.group.RESPONSE_CODE,
        expert.severity.WARN),
    other = ProtoExpert.new("varda.other", "The answer is not to the last request",
        expert.group.SEQUENCE, expert.severity.WARN),
    unasked = ProtoExpert.new("varda.unasked", "Nothing was asked", expert.group.SEQUENCE,
        expert.severity.NOTE),
}

-- Layouts of payloads. A cursor puts one field after the other into the tree.

local Cursor = {}
Cursor.__index = Cursor

local function cursor(tvb, tree)
    return setmetatable({ tvb = tvb, tree = tree, pos = 0, size = tvb and tvb:len() or 0 }, Cursor)
end

function Cursor:left() return self.size - self.pos end

-- The next bytes, or nothing if the payload ends before.
function Cursor:take(size)
    if size > self:left() then
        self.short = true
        self.pos = self.size
        return nil
    end
    local range = self.tvb(self.pos, size)
    self.pos = self.pos + size
    return range
end

function Cursor:add(name, size)
    local range = self:take(size)
    if range then self.last = self.tree:add_le(fields[name], range) end
    return range
end

function Cursor:skip(size)
    if size > 0 then self:add("unknown", size) end
end

function Cursor:rest(name)
    if self:left() > 0 then self:add(name, self:left()) end
end

function Cursor:uint(name, size)
    local range = self:add(name, size)
    return range and range:le_uint() or 0
end

local function versionText(value)
    local last = value % 256
    return string.format("%d.%d.%d.%s", math.floor(value / 16777216),
        math.floor(value / 65536) % 256, math.floor(value / 256) % 256,
        last >= 32 and last < 127 and string.char(last) or "")
end

function Cursor:version(name)
    local value = self:uint(name, 4)
    if self.last then self.last:append_text(" (" .. versionText(value) .. ")") end
end

-- Each of these makes a step of a layout: a function that is called with the cursor.

local function number(kind, size, base_, name, values)
    declare(kind, name, nil, base_, values)
    return function(c) c:add(name, size) end
end
local function u8(name, values) return number("uint8", 1, base.DEC, name, values) end
local function i8(name) return number("int8", 1, base.DEC, name) end
local function u16(name) return number("uint16", 2, base.DEC, name) end
local function u32(name) return number("uint32", 4, base.DEC, name) end
local function i32(name) return number("int32", 4, base.DEC, name) end
local function u64(name) return number("uint64", 8, base.DEC, name) end
local function i64(name) return number("int64", 8, base.DEC, name) end
local function float(name)
    declare("float", name)
    return function(c) c:add(name, 4) end
end
local function version(name)
    declare("uint32", name, nil, base.HEX)
    return function(c) c:version(name) end
end
local function bytes(name, size)
    declare("bytes", name)
    return function(c) if size then c:add(name, size) else c:rest(name) end end
end
-- All that is left, up to its NUL.
local function text(name, encoding)
    declare("string", name)
    return function(c)
        if c:left() == 0 then return end
        local range = c:take(c:left())
        local value = range:string(encoding or ENC_UTF_8)
        c.tree:add(fields[name], range, (value:gsub("%z.*", "")))
    end
end
local function times(count, step)
    return function(c) for _ = 1, count do step(c) end end
end
local function skip(size) return function(c) c:skip(size) end end
-- Zero is a refusal.
local function accepted(c)
    declare("uint8", "accepted", nil, base.DEC, kAccepted)
    if c:add("accepted", 1) and c.tvb(c.pos - 1, 1):uint() == 0 then c.refused = true end
end
declare("uint8", "accepted", nil, base.DEC, kAccepted)

local function layout(...)
    local steps = { ... }
    return function(c, state)
        for _, step in ipairs(steps) do step(c, state) end
    end
end

declare("uint32", "firmwareVersion", nil, base.HEX)
declare("uint32", "bootloaderVersion", nil, base.HEX)
declare("uint8", "identification", nil, base.DEC)
declare("uint8", "computerModel", nil, base.DEC, kModels)
declare("uint8", "recordVersion", nil, base.DEC, kModes)

local function identification(c, state)
    c:version("firmwareVersion")
    local code = c:uint("identification", 1)
    if not c.short then
        local range = c.tvb(c.pos - 1, 1)
        local recordVersion = code
        -- The model is in the tens; a lower code leaves it as it was.
        if code > 10 then
            state.model = math.min(math.floor((code - 1) / 10), 3)
            recordVersion = code - 10 * state.model
        end
        state.recordVersion = recordVersion
        c.tree:add(fields.computerModel, range, state.model):set_generated()
        c.tree:add(fields.recordVersion, range, recordVersion):set_generated()
    end
    if state.model >= 2 then
        c:version("bootloaderVersion")
    end
end

declare("string", "serialNumber")
local function serialNumber(c, state)
    local range
    if state.recordVersion == 0 then
        range = c:take(7)
        if not range then return end
        local b = function(i) return range(i, 1):uint() end
        c.tree:add(fields.serialNumber, range, string.format("%02x%02x-%02x%02x-%02x%02x-%c",
            b(5), b(4), b(3), b(2), b(1), b(0), b(6)))
    else
        range = c:take(12)
        if not range then return end
        c.tree:add(fields.serialNumber, range, string.format("%08X-%08X-%08X",
            range(0, 4):le_uint(), range(4, 4):le_uint(), range(8, 4):le_uint()))
    end
end

local function gas(name)
    declare("uint16", name, nil, base.HEX)
    return function(c)
        local value = c:uint(name, 2)
        if c.last then
            c.last:append_text(string.format(" (O2 %d %%, He %d %%)", value % 256,
                math.floor(value / 256)))
        end
    end
end
local gasTable1, gasTable2 = gas("gasTable1"), gas("gasTable2")

local owner32
do
    declare("string", "rawBlock")
    owner32 = function(c)
        local range = c:take(32)
        if range then
            c.tree:add(fields.rawBlock, range, (range:string(ENC_UTF_8):gsub("%z.*", "")))
        end
    end
end

local batteryType = u8("batteryType", kBatteries)
local cfgTriple = {
    first = u16("cfgTriple.first"), second = u16("cfgTriple.second"), third = u8("cfgTriple.third"),
}
local laterSettings = layout(u8("setting2"), u8("setting3"), u8("setting4"), u8("setting5"),
    u16("setting6"), u8("setting7"), u8("setting8"), u64("value64a"), bytes("flags32", 32))
local setting1, cfgH = u8("setting1"), u8("cfgH")
local cfgBytes, tailBytes = u8("cfgBytes"), u8("tailBytes")
local quadWords = times(4, u16("quadWords"))
local computerByte1, computerByte5 = u8("computerByte1"), u8("computerByte5")
local computerWord7, sixWords = u16("computerWord7"), times(6, u16("sixWords"))

declare("uint8", "entryCount", nil, base.DEC)
local vardaExtended = layout(
    u64("value64b"),
    function(c) c:skip(11 * c:uint("entryCount", 1)) end,
    u64("value64c"), computerByte1, quadWords, u16("computerWord1"), u16("computerWord2"),
    u16("computerWord3"), u16("computerWord4"), u8("computerByte2"), u8("computerByte3"),
    u8("computerByte4"), u64("value64d"), u64("value64e"), computerByte5, u16("computerWord6"),
    u16("computerWord5"), computerWord7)

local function vardaComputer(c, version_, extended)
    times(3, tailBytes)(c)
    times(5, cfgBytes)(c)
    c:skip(1)
    times(version_ > 12 and 12 or 8, gasTable1)(c)
    cfgH(c)
    times(3, cfgTriple.first)(c)
    owner32(c)
    batteryType(c)
    setting1(c)
    laterSettings(c)
    if extended then
        vardaExtended(c)
        if version_ > 12 then sixWords(c) end
    end
end

-- From each of these versions on, that many bytes behind the gases.
local kTidemarGap = { { 11, 8 }, { 10, 4 }, { 5, 3 } }
local kVskmGap = {
    { 21, 82 }, { 20, 68 }, { 17, 44 }, { 15, 41 }, { 14, 15 }, { 13, 13 }, { 12, 9 }, { 11, 8 },
    { 10, 4 }, { 5, 3 },
}
local kTidemarExtendedGap = { { 12, 9 }, { 8, 2 } }
local kVskmExtendedGap = { { 8, 2 } }

local function gap(table_, version_)
    for _, row in ipairs(table_) do
        if version_ >= row[1] then return row[2] end
    end
    return 0
end

local function tidemarComputer(c, version_, extended, gaps, extendedGaps)
    local stride = version_ >= 8 and 2 or 0
    local function gases(step)
        for _ = 1, 8 do
            step(c)
            c:skip(stride)
        end
    end
    times(3, tailBytes)(c)
    times(6, cfgBytes)(c)
    gases(gasTable1)
    cfgH(c)
    times(3, layout(cfgTriple.first, cfgTriple.second, cfgTriple.third))(c)
    if version_ > 1 then
        gases(gasTable2)
        c:skip(gap(gaps, version_))
    end
    owner32(c)
    batteryType(c)
    laterSettings(c)
    if extended then
        computerWord7(c)
        computerByte5(c)
        computerByte1(c)
        quadWords(c)
        c:skip(gap(extendedGaps, version_))
        setting1(c)
    end
end

declare("uint16", "configVersion", nil, base.HEX)
declare("uint8", "configModel", nil, base.DEC, kModels)
declare("uint16", "configWord", nil, base.DEC)
local configHeader = layout(u8("cfgA"), u8("cfgB"), u8("cfgC"), u8("cfgD"), u16("cfgE"),
    u8("waterType", kWaterTypes), u16("surfacePressure"), u8("cfgF"), u8("cfgG"))

local function computer(extended)
    return function(c)
        if c:left() < 2 then
            c.short = true
            return
        end
        local version_, model = 0, 0
        if c.tvb(0, 2):le_uint() >= 255 then
            version_ = c:uint("configVersion", 2) % 256
            model = c:uint("configModel", 1)
        end
        c:uint("configWord", 2)
        configHeader(c)
        if model <= 1 then
            vardaComputer(c, version_, extended)
        elseif model == 2 then
            tidemarComputer(c, version_, extended, kTidemarGap, kTidemarExtendedGap)
        elseif model == 3 then
            tidemarComputer(c, version_, extended, kVskmGap, kVskmExtendedGap)
        end
    end
end

declare("uint16", "headerVersion", nil, base.HEX)
declare("uint16", "diveNumber", nil, base.DEC)
declare("uint8", "gasSlotMask8", "gasSlotMask", base.HEX)
declare("uint16", "gasSlotMask", nil, base.HEX)
declare("uint16", "pressureWord", nil, base.DEC)
local headerStart = layout(u8("headerByte5"), u8("kindByte"), u8("headerByte1"), u8("headerByte2"),
    u16("pressureWord"), u16("headerWord1"),
    times(16, layout(u16("tissueN2"), u16("tissueHe"))))
local gasPair = layout(u8("gasO2"), u8("gasHe"))
local headerWord5, headerWord6 = u16("headerWord5"), u16("headerWord6")
local headerWord7, headerWord8 = u16("headerWord7"), u16("headerWord8")
local value32a = u32("value32a")
local headerBlock = layout(value32a, u32("value32d"))
local headerTail = layout(u64("stamp"), u16("headerWord3"), u16("tenths1"), u16("tenths2"),
    i8("signed1"), i8("signed2"), u32("value32b"), u16("headerWord2"), u32("count1"), u32("count2"),
    u16("headerWord4"), u16("headerWord11"), u16("headerWord12"), i64("stamp2"), u32("value32c"),
    u32("value32e"), u32("value32f"))
local sampleInterval, headerByte7 = u8("sampleInterval"), u8("headerByte7")
local headerWord13, headerWord14 = u16("headerWord13"), u16("headerWord14")
local tidemarBit = u8("tidemarBit")

local function diveHeader(c, state)
    if c:left() < 2 then
        c.short = true
        return
    end
    local version_ = 0
    if c.tvb(0, 2):le_uint() > 0x8000 then
        version_ = c:uint("headerVersion", 2) % 256
    end
    c:uint("diveNumber", 2)
    headerStart(c)
    if version_ >= 5 then c:uint("gasSlotMask", 2) else c:uint("gasSlotMask8", 1) end
    times(version_ >= 5 and 12 or 8, gasPair)(c)
    c:skip(1)
    headerWord5(c)
    -- Before these the models that came later have more.
    local more = state.model >= 2 and 3 or 0
    c:skip(more)
    headerWord6(c)
    c:skip(more)
    headerWord7(c)
    c:skip(more)
    headerBlock(c)
    local isVarda = state.model == 1
    if version_ > 0 and isVarda then headerWord8(c) end
    headerTail(c)
    if version_ >= 1 then
        sampleInterval(c)
        value32a(c)
    end
    if version_ >= 6 and isVarda then
        headerByte7(c)
        headerWord13(c)
    end
    if version_ >= 10 and isVarda then headerWord14(c) end
    if version_ >= 4 and state.model == 2 then tidemarBit(c) end
end

declare("uint32", "batteryA", nil, base.HEX)
declare("uint32", "batteryB", nil, base.HEX)
local function batteryInformation(c)
    while c:left() >= 8 do
        c:uint("batteryA", 4)
        c:uint("batteryB", 4)
    end
end

local clock = layout(i64("computerTime"))
local sensors = layout(skip(1), u32("pamb"), u16("dstop"))
local deleted = layout(u32("resultA"), u32("resultB"))
local layoutText = text("layoutName", ENC_ISO_8859_1)
local programData, layoutData = bytes("programData"), bytes("layoutData")

local kAnswers = {
    [1] = identification,
    [2] = layout(text("syslog")),
    [3] = serialNumber,
    [5] = computer(false),
    [7] = clock,
    [8] = clock,
    [9] = sensors,
    [10] = sensors,
    [13] = accepted,
    [14] = accepted,
    [15] = accepted,
    [17] = layout(times(16, float("diverN2")), times(16, float("diverHe")), float("diverCns")),
    [19] = diveHeader,
    [20] = layout(bytes("samples")),
    [22] = layout(text("owner")),
    [23] = accepted,
    [24] = computer(true),
    [25] = deleted,
    [26] = deleted,
    [27] = layout(u8("eraseFlashResult")),
    [28] = layout(u32("psurf"), u32("pamb"), u16("density")),
    [29] = layout(i64("logTime"), u8("logType"), i32("arg1"), i32("arg2")),
    [30] = layout(accepted, function(c) if c:left() >= 4 then c:add("resumeAt", 4) end end),
    [31] = accepted,
    [32] = accepted,
    [33] = layout(version("bootloaderVersion")),
    [34] = layout(u8("gasTable"), u8("gasIndex"), skip(8), float("oxygen"), float("helium")),
    [35] = accepted,
    [36] = layout(u8("layoutIndex"), u8("layoutMode"), layoutText),
    [37] = layout(layoutData),
    [38] = accepted,
    [39] = accepted,
    [40] = accepted,
    [41] = layout(function(c) c:add("activeLayouts", math.min(5, c:left())) end),
    [42] = accepted,
    [238] = batteryInformation,
}
declare("uint32", "resumeAt", nil, base.DEC)
declare("bytes", "activeLayouts")

-- An answer in several frames ends with one whose payload has at most that many bytes.
local kEnds = { [2] = 0, [19] = 0, [20] = 0, [29] = 0, [34] = 1, [36] = 0, [37] = 0, [238] = 0 }

local knownDive = u16("knownDive")
local kRequests = {
    [8] = clock,
    [10] = layout(u32("pressure")),
    [13] = layout(function(c)
        local range = c:take(32)
        if range then
            c.tree:add(fields.programName, range, (range:string(ENC_UTF_8):gsub("%z.*", "")))
        end
    end, version("programVersion"), u32("programSize"), number("uint32", 4, base.HEX,
        "programChecksum")),
    [14] = layout(programData),
    [19] = function(c) while c:left() >= 2 do knownDive(c) end end,
    [20] = layout(function(c) c:add("diveNumber", 2) end),
    [23] = layout(text("owner")),
    [30] = layout(number("uint32", 4, base.HEX, "magic", kMagics), u32("headerWord"),
        version("programVersion"), times(5, u32("headerWord"))),
    [31] = layout(programData),
    [34] = layout(u8("gasType")),
    [35] = layout(u8("marloByte"), u8("marloByte"), float("marloFloat"), u8("marloByte"),
        float("marloFloat"), u8("marloByte"), u8("marloByte"), u8("marloByte")),
    [37] = layout(function(c) c:add("layoutIndex", 1) end),
    [38] = layout(u8("layoutFlags", { [0] = "middle", [1] = "first", [2] = "last", [3] = "all" }),
        layoutData),
    [39] = layout(function(c) c:add("layoutIndex", 1) end),
    [42] = layout(u8("diveMode"), i8("activeIndex")),
    [252] = layout(u8("activate")),
}
declare("string", "programName")

do
    local list, expertList = {}, {}
    for _, each in pairs(fields) do list[#list + 1] = each end
    for _, each in pairs(experts) do expertList[#expertList + 1] = each end
    varda.fields = list
    varda.experts = expertList
end

-- CRC-16/SPI-FUJITSU

local kCrcTable = {}
for byte = 0, 255 do
    local value = byte * 256
    for _ = 1, 8 do
        local top = value >= 0x8000
        value = value * 2 % 0x10000
        if top then value = bits.bxor(value, 0x1021) end
    end
    kCrcTable[byte] = value
end

local function crcOf(body)
    local crc = 0x1D0F
    for i = 1, #body do
        crc = bits.bxor(crc % 256 * 256, kCrcTable[bits.bxor(math.floor(crc / 256), body:byte(i))])
    end
    return crc
end

-- Frames out of what was written and notified. What a packet completes is found out once, in the
-- order of the file; Wireshark may ask for a packet again at any time.

local connections = {}
local packets = {}
local partsWholeIn = {}

function varda.init()
    connections, packets, partsWholeIn = {}, {}, {}
end

-- The addresses, since fields of other protocols are not there when a file is read first.
local function connectionOf(pinfo, isRequest)
    local ours, theirs = tostring(pinfo.src), tostring(pinfo.dst)
    if not isRequest then ours, theirs = theirs, ours end
    local name = ours .. " " .. theirs
    if not connections[name] then
        connections[name] = {
            state = { model = 0, recordVersion = 1 },
            [true] = { bytes = "", parts = {} },
            [false] = { bytes = "", parts = {} },
        }
    end
    return connections[name]
end

-- What the host has sent is a request.
local kIsRequest = { [0] = true, [1] = false }

local function u16At(text_, at) return text_:byte(at) + 256 * text_:byte(at + 1) end

-- Cuts the whole frames off.
local function takeFrames(stream, packet)
    while #stream.bytes >= kHeaderSize do
        if stream.bytes:sub(1, 2) ~= "\xDC\xDC" then break end
        local size = kHeaderSize + u16At(stream.bytes, 3)
        if #stream.bytes < size then break end
        local from = #stream.bytes - size
        packet.frames[#packet.frames + 1] = {
            bytes = stream.bytes:sub(1, size),
            parts = stream.parts,
            from = packet.size - #stream.bytes, -- below zero: begins in an earlier packet
        }
        stream.bytes = from > 0 and stream.bytes:sub(size + 1) or ""
        stream.parts = #stream.bytes > 0 and { packet.number } or {}
    end
end

local function readPacket(tvb, pinfo, isRequest)
    local connection = connectionOf(pinfo, isRequest)
    local stream, opposite = connection[isRequest], connection[not isRequest]
    local packet = { number = pinfo.number, isRequest = isRequest, frames = {}, size = tvb:len() }
    -- Who asks again no longer waits for the rest; who answers has had the whole request.
    if #opposite.bytes > 0 then
        packet.cut = opposite.parts[#opposite.parts]
        opposite.bytes, opposite.parts = "", {}
    end
    stream.bytes = stream.bytes .. tvb:raw()
    stream.parts[#stream.parts + 1] = pinfo.number
    takeFrames(stream, packet)
    -- Half a start may still become one.
    local rest = #stream.bytes
    if rest > 0 and stream.bytes:sub(1, 2) ~= ("\xDC\xDC"):sub(1, math.min(rest, 2)) then
        packet.noFrame = rest
        stream.bytes, stream.parts = "", {}
    elseif rest > 0 then
        packet.open = rest
    end
    for _, frame in ipairs(packet.frames) do
        if #frame.bytes > kHeaderSize then
            frame.command = frame.bytes:byte(kHeaderSize + 1)
            if isRequest then
                connection.asked = { command = frame.command, number = pinfo.number,
                    time = pinfo.rel_ts }
            else
                frame.asked = connection.asked
            end
        end
        for _, part in ipairs(frame.parts) do
            if part ~= pinfo.number then partsWholeIn[part] = pinfo.number end
        end
        frame.state = { model = connection.state.model,
            recordVersion = connection.state.recordVersion }
        -- The layouts of later answers depend on it.
        if not isRequest and frame.command == 1 and #frame.bytes >= kHeaderSize + 6 then
            local code = frame.bytes:byte(kHeaderSize + 6)
            local tens = code > 10 and math.min(math.floor((code - 1) / 10), 3) or 0
            if code > 10 then connection.state.model = tens end
            connection.state.recordVersion = code - 10 * tens
        end
    end
    return packet
end

local function hasPayload(frame) return #frame.bytes > kHeaderSize + 1 end

local function addPayload(tree, range, frame, isRequest)
    local layouts = isRequest and kRequests or kAnswers
    local last = kEnds[frame.command]
    local size = #frame.bytes - kHeaderSize - 1
    if not isRequest and last and size <= last then
        tree:add(fields["end"], true):set_generated()
        if size > 0 then tree:add(fields.payload, range) end
        return
    end
    local read = layouts[frame.command]
    if not read or (size == 0 and isRequest) then
        if size > 0 then tree:add(fields.payload, range) end
        return
    end
    local c = cursor(range, tree)
    read(c, { model = frame.state.model, recordVersion = frame.state.recordVersion })
    c:rest("unknown")
    if c.short then tree:add_proto_expert_info(experts.short) end
    if c.refused then tree:add_proto_expert_info(experts.refused) end
end

local function addFrame(tree, tvb, frame, packet)
    local range
    if frame.from >= 0 then
        range = tvb(frame.from, #frame.bytes)
    else
        range = ByteArray.new(frame.bytes, true):tvb("Whole frame")()
    end
    local name = frame.command and (kCommands[frame.command] or tostring(frame.command)) or "empty"
    local item = tree:add(varda, range, "Varda " .. (packet.isRequest and "request " or "answer ")
        .. name)
    item:add(fields.request, packet.isRequest):set_generated()
    if frame.from < 0 then
        for _, part in ipairs(frame.parts) do item:add(fields.fragment, part):set_generated() end
    end
    item:add(fields.start, range(0, 2))
    item:add_le(fields.length, range(2, 2))
    local crcItem = item:add_le(fields.crc, range(4, 2))
    local good = crcOf(frame.bytes:sub(kHeaderSize + 1)) == u16At(frame.bytes, 5)
    item:add(fields["crc.good"], range(4, 2), good):set_generated()
    if not good then crcItem:add_proto_expert_info(experts.crc) end
    item:add(fields.reserved, range(6, 2))
    if not frame.command then
        item:add_proto_expert_info(experts.empty)
        return name
    end
    local commandItem = item:add(fields.command, range(8, 1))
    if not kCommands[frame.command] then
        commandItem:add_proto_expert_info(experts.command)
    end
    if not packet.isRequest then
        if frame.asked then
            item:add(fields.request_in, frame.asked.number):set_generated()
            item:add(fields.time, packet.time - frame.asked.time):set_generated()
            if frame.asked.command ~= frame.command then
                commandItem:add_proto_expert_info(experts.other)
            end
        else
            commandItem:add_proto_expert_info(experts.unasked)
        end
    end
    local payload = hasPayload(frame) and range(kHeaderSize + 1):tvb() or nil
    addPayload(item, payload, frame, packet.isRequest)
    return name
end

local function describe(names, packet)
    local counts, order = {}, {}
    for _, name in ipairs(names) do
        if not counts[name] then order[#order + 1] = name end
        counts[name] = (counts[name] or 0) + 1
    end
    local texts = {}
    for _, name in ipairs(order) do
        texts[#texts + 1] = counts[name] > 1 and string.format("%s (%d frames)", name, counts[name])
            or name
    end
    if packet.open then texts[#texts + 1] = "part of a frame" end
    if packet.noFrame then texts[#texts + 1] = "no frame" end
    return (packet.isRequest and "Request: " or "Answer: ") .. table.concat(texts, ", ")
end

function varda.dissector(tvb, pinfo, tree)
    local isRequest = kIsRequest[pinfo.p2p_dir]
    if isRequest == nil or tvb:len() == 0 then return 0 end
    local packet = packets[pinfo.number]
    if not packet then
        packet = readPacket(tvb, pinfo, isRequest)
        packet.time = pinfo.rel_ts
        packets[pinfo.number] = packet
    end

    pinfo.cols.protocol = "Varda"
    local names = {}
    for _, frame in ipairs(packet.frames) do
        names[#names + 1] = addFrame(tree, tvb, frame, packet)
    end
    if packet.cut then
        tree:add(varda, tvb(0, 0), "Varda: a frame without an end")
            :add_proto_expert_info(experts.cut)
    end
    if packet.open then
        local item = tree:add(varda, tvb(packet.size - math.min(packet.open, packet.size)),
            "Varda, part of a frame")
        item:add(fields.part, tvb(packet.size - math.min(packet.open, packet.size)))
        local whole = partsWholeIn[pinfo.number]
        if whole then
            item:add(fields.whole_in, whole):set_generated()
        elseif pinfo.visited then
            item:add_proto_expert_info(experts.open)
        end
    end
    if packet.noFrame then
        local range = tvb(packet.size - math.min(packet.noFrame, packet.size))
        local item = tree:add(varda, range, "Varda, no frame")
        item:add(fields.part, range)
        item:add_proto_expert_info(experts.start)
    end
    pinfo.cols.info = describe(names, packet)
    return tvb:len()
end

local creditsField = ProtoField.uint8("varda_credits.granted", "Granted", base.DEC)
credits.fields = { creditsField }

function credits.dissector(tvb, pinfo, tree)
    if tvb:len() == 0 then return 0 end
    pinfo.cols.protocol = "Varda"
    pinfo.cols.info = "Credits: " .. tvb(0, 1):uint()
    tree:add(credits, tvb()):add(creditsField, tvb(0, 1))
    return tvb:len()
end

local uuids = DissectorTable.get("bluetooth.uuid")
for _, each in ipairs(kDataUuids) do uuids:add(each, varda) end
uuids:add(kCreditsUuid, credits)
-- For logs that begin in the middle of a connection, or whose program knew the handles.
DissectorTable.get("btatt.handle"):add_for_decode_as(varda)
