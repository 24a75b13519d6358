"""A second, plain implementation of the export, to compare the plug-in with.

PlugIn stands for the loaded library and keeps what the library keeps between exports. Its export() is a
generator of steps in the order in which they happen:

    Request     to be answered, before the generator goes on, by setting the value of its filled cells
    bytes       a whole record of the model input file
    FileOpens   the file of this path is created or emptied now
    FileCloses  the file is complete and closed before the next request
"""

import re
from functools import partial
from typing import NamedTuple

from reference_records import free_record, record

SERIES_LENGTH = 100_000
DESCRIPTION_LENGTH = 80


class Cell:
    """A variable or table entry of the plug-in that the host is handed by reference.

    The value is an int, a Real, bytes or a list of Reals by its kind, or None as long as no rule settles
    what it holds: then only a host that fills it whole has a known result.
    """

    __slots__ = ("kind", "length", "value")

    def __init__(self, kind, value=None, length=0):
        self.kind, self.value, self.length = kind, value, length

    def take(self, written):
        """What the host writes: a text or series from its start on, the rest stays; None writes nothing."""
        if written is None:
            return
        if self.kind == "text" and self.value:
            written += self.value[len(written) :]
        if self.kind == "series":
            self.value[: len(written)] = written
        else:
            self.value = written


class BuildLine(NamedTuple):
    """A line of the version panel, which differs from build to build, with the form that it has."""

    field: int
    form: str

    def matches(self, fragment):
        text, _, rest = fragment.partition(b"\0")
        return (
            len(fragment) == self.field + 1
            and re.fullmatch(self.form, text.decode("latin-1")) is not None
            and rest == b" " * (self.field - len(text) - 1) + b"\0"
        )


class Request(NamedTuple):
    key: str
    cells: tuple
    given: tuple  # for each cell whether it selects, that is, whether the host reads it

    @property
    def text_lengths(self):
        return [cell.length for cell in self.cells if cell.kind == "text"]


class FileOpens(NamedTuple):
    path: bytes


class FileCloses(NamedTuple):
    path: bytes


def integer(value=None):
    return Cell("integer", value)


def real():
    return Cell("real")


def text(length, value=None):
    return Cell("text", value, length)


def series():
    return Cell("series", [None] * SERIES_LENGTH)


def entries(count, make):
    """A table numbered from 1."""
    return {i: make() for i in range(1, count.value + 1)}


class Given:
    """Marks an argument that the host reads. A number travels as a copy, a Cell as itself."""

    def __init__(self, value):
        if isinstance(value, Cell):
            self.cell = value
        elif isinstance(value, int):
            self.cell = integer(value)
        else:
            self.cell = text(value.field + 1 if isinstance(value, BuildLine) else len(value), value)


def ask(key, *arguments):
    cells = tuple(a.cell if isinstance(a, Given) else a for a in arguments)
    return Request(key, cells, tuple(isinstance(a, Given) for a in arguments))


def asked(layout, key, *arguments):
    """Asks for a value, which is the last argument, and writes it."""
    yield ask(key, *arguments)
    yield record(layout, arguments[-1].value)


def index(*numbers):
    return [Given(number) for number in numbers]


def up_to(count):
    return range(1, count.value + 1)


def ended(content, length):
    """Without trailing blanks, with a NUL after it and blanks up to the length; a full text stays whole."""
    return (content.rstrip(b" ") + b"\0").ljust(length)[:length]


def banner(title):
    return free_record(b"=" * 24 + b" " + title.encode() + b" " + b"=" * 35)


def announce(closing):
    yield ask("PINFOHTML", Given(b'<li><span style="font-weight: bold; color: blue;">\0'))
    yield ask("PINFOHTML", Given(closing.encode() + b"</span></li>\0"))


def version_panel():
    row = '<tr style="font-weight: bold;" align="Left"><td>'
    next_row = "</td></tr>" + row
    revision = " sha: [0-9a-f]{7} dirty"
    time = r"[A-Z][a-z]{2}, \d{1,2} [A-Z][a-z]{2} \d{4} \d\d:\d\d:\d\d [+-]\d{4}"
    for fragment in [
        '<center><body><table style="text-align: left; width: 332px; height: 284px;"',
        'border="1" cellpadding="2" cellspacing="2"><tbody>',
        '<tr style="font-weight: bold; color: white;"align="center">',
        '<td style="background-color: blue;">',
        "VELM Export Utility Version Information</td></tr>",
        row,
        BuildLine(30, r"QELDA -- VELM Version \d+\.\d+\.\d+"),
        next_row,
        BuildLine(30, "Model" + revision),
        "</td></tr>",
        row,
        BuildLine(50, "Built on: " + time),
        next_row,
        BuildLine(30, "Model branch: .*"),
        next_row,
        BuildLine(30, "Gui" + revision),
        next_row,
        BuildLine(30, "Gui branch: .*"),
        next_row,
        BuildLine(30, "Platform: [a-z]+"),
        next_row,
        BuildLine(30, "Architecture: [0-9]+"),
        next_row,
        BuildLine(30, "Build type: [a-z]+"),
        "</td></tr></tbody></table><br></body></Center>",
    ]:
        yield ask("PINFOHTML", Given(fragment if isinstance(fragment, BuildLine) else fragment.encode() + b"\0"))


class PlugIn:
    def __init__(self):
        self.file_name = text(512, bytes(512))
        self.description = text(DESCRIPTION_LENGTH, bytes(DESCRIPTION_LENGTH))
        self.hydrodynamic_file = text(512, bytes(512))
        self.nps_file = text(512, bytes(512))

    def export(self):
        yield ask("GFILENAME", self.file_name)
        self.file_name.value = ended(self.file_name.value, 512)
        path = self.file_name.value.split(b"\0")[0]
        yield from version_panel()
        yield FileOpens(path)
        for section in (
            self.sys_info,
            self.segment,
            self.flowpath,
            self.flows,
            self.dispexch,
            self.boundaries,
            self.loads,
            self.time_functions,
            self.parameters,
            self.constants,
            self.initial_conditions,
        ):
            yield from section()
        yield FileCloses(path)
        yield from announce("File Export is Complete")

    def sys_info(self):
        yield from announce("System Information is being Exported")
        model_type = integer()
        yield ask("GMODELTYPE", model_type)
        yield record("(I5,5x,I2,10x,'Module Type, Version')", model_type.value, 3)
        yield banner("Model Parameterization")

        time, date = [integer() for _ in range(3)], [integer() for _ in range(3)]
        yield ask("GSEEDTIME", *time)
        yield ask("GSEEDDATE", *date)
        yield record("(6I5,5x,'Start date and time')", *[cell.value for cell in date + time])
        time, date = [integer() for _ in range(3)], [integer() for _ in range(3)]
        yield ask("GHYDSKIPDATE", *date)
        yield ask("GHYDSKIPTIME", *time)
        yield record("(6I5,5x,'Skip date and time')", *[cell.value for cell in date + time])
        yield from asked("(F10.1,10x,'Julian end time')", "GENDJULIAN", real())

        self.systems = integer()
        for key, cell, label in [
            ("GNUMSYS", self.systems, "Number of Systems"),
            ("GJMAS", integer(), "Mass Balance Table Output"),
            ("GSOLUTIONTYPE", integer(), "Solution Technique Option"),
            ("GNEGSLN", integer(), "Negative Solution Option"),
            ("GICRD", integer(), "Restart Option"),
            ("GINTYP", integer(), "Time Optimization Option"),
            ("GVELMTOVELMLINK", integer(), "WQ Module Linkage Option"),
        ]:
            yield from asked(f"(I5,15x,'{label}')", key, cell)

        longest, shortest = real(), real()
        yield from asked("(F10.4,10x,'TOPT Factor')", "GFRACMAXTS", real())
        yield ask("GMAXDT", longest)
        yield ask("GMINDT", shortest)
        yield record("(F8.6,1x,F6.3,5x,'Min and Max Timestep')", shortest.value, longest.value)
        yield from asked("(F10.4,5x,'Time and Print Interval')", "GMODELOUTPUTINTERVAL", real())

        self.system_names = entries(self.systems, lambda: text(30))
        for s in up_to(self.systems):
            name, tag = self.system_names[s], text(5, bytes(5))
            name.value = bytes(30)
            yield ask("GSYSNAME", Given(s), name, tag)
            name.value = ended(name.value, 30)
            yield record("(A5,5X,A30)", tag.value, name.value)
        yield ask("PPROGRESS", Given(0))

    def segment(self):
        yield banner("Segment Information")
        yield from announce("Segment Information is being Exported")
        self.segments = integer()
        yield from asked("(I5,15x,'Number of Segments')", "GNUMSEG", self.segments)
        scale, conversion = real(), real()
        yield from asked("(I5,15x,'Bed Volume Option')", "GBEDOPT", integer())
        yield from asked("(F10.3,10x,'Bed Compaction Time Step')", "GBEDDT", real())
        yield ask("GSCALV", scale)
        yield ask("GCONVV", conversion)
        yield record("(2F14.6,2x,'Volume Scale & Conversion Factor')", scale.value, conversion.value)

        yield record("('  Segment   SegName')")
        for i in up_to(self.segments):
            name = text(40, bytes(40))
            yield ask("GSEGNAME", Given(i), name)
            yield record("(I5,5x,A40)", i, ended(name.value, 40))

        yield record(
            "(' Seg BotSeg iType IQOPT     Volume          VMult          Vexp          DMult"
            "           Dexp         Length',              '          Slope         Width"
            "           Rough         Depth_Q0       SurfElev      SegBotElev    SegSideSlope',"
            "              '   SegInitDepth    WeirHeight       WeirType')"
        )
        self.flow_options = entries(self.segments, integer)
        for i in up_to(self.segments):
            bottom, kind = integer(), integer()
            yield ask("GBOTSEG", Given(i), bottom)
            yield ask("GSEGTYPE", Given(i), kind)
            yield ask("GIQOPT", self.flow_options[i], Given(i))
            values = []
            for key in (
                "GVOLUME GVMULT GVEXP GDMULT GDEXP GSEGSLOPE GSEGLENGTH GSEGWIDTH GSEGROUGH GSEGMINDEPTH"
                " GINITIALSURFACEELEVATION GBOTTOMELEVATION GSIDESLOPE GINITIALDEPTH GWEIRHEIGHT GWEIRTYPE"
            ).split():
                values.append(real())
                yield ask(key, Given(i), values[-1])
            values[5:7] = values[6], values[5]  # the length stands before the slope
            integers = [i, bottom.value, kind.value, self.flow_options[i].value]
            yield record("(4(I5),16(F15.5))", *integers, *[cell.value for cell in values])

    def flowpath(self):
        yield banner("Flow Path Information")
        yield from announce("Flow Paths are being Exported")
        yield record("(15x,'Flow Pathways')")
        self.flow_fields = integer()
        yield from asked("(I5,15x,'Number of flow fields')", "GNFIELD", self.flow_fields)
        self.flow_functions = entries(self.flow_fields, integer)
        for f in up_to(self.flow_fields):
            yield free_record(b"    Flow Field ", f)
            if f == 1 and self.segments.value >= 1 and self.flow_options[1].value == 3:
                yield ask("GHYDROFILE", self.hydrodynamic_file)
                yield free_record(self.hydrodynamic_file.value)
            yield ask("GNINQ", Given(f), self.flow_functions[f])
            yield record("(I5,15x,'Number of Flow Functions for Flow Field')", self.flow_functions[f].value)
            for q in up_to(self.flow_functions[f]):
                paths = integer()
                yield ask("GNOQS", *index(f, q), paths)
                yield ask("GFLOWFUNCDESC", *index(f, q), self.description)
                yield free_record(self.description.value)
                yield free_record(paths.value)
                for r in up_to(paths):
                    first, second, fraction = integer(), integer(), real()
                    yield ask("GJQ", *index(f, q, r), first)
                    yield ask("GIQ", *index(f, q, r), second)
                    yield ask("GBQ", *index(f, q, r), fraction)
                    yield record("(I4,2X,I4,F15.2)", first.value, second.value, fraction.value)

    def flows(self):
        yield banner("Flow Time Series")
        yield from announce("Flows are being Exported")
        names = [
            "Surface Water Flow Field",
            "Porewater Flow Field",
            "Solids - 1",
            "Solids - 2",
            "Solids - 3",
            "Evap/Precip Flow Field",
        ]
        yield from asked("(I5,15x,'Number of Flow Fields')", "GNFIELD", self.flow_fields)
        scale, conversion = real(), real()
        for f in up_to(self.flow_fields):
            name = names[f - 1] if f <= len(names) else f"Flow Field {f}"
            yield free_record(ended(name.encode(), 40))
            functions = self.flow_functions.setdefault(f, integer())
            yield from asked("(I5,15x,'Number of inflows')", "GNINQ", Given(f), functions)
            if functions.value > 0:
                yield ask("GSCALEQ", Given(f), scale)
                yield ask("GCONVQ", Given(f), conversion)
                yield record("(2F14.6,2x,'Flow Scale & Conversion Factors')", scale.value, conversion.value)
                for q in up_to(functions):
                    yield from asked("(A30)", "GFLOWFUNCDESC", *index(f, q), self.description)
                    pairs = integer()
                    yield from asked("(I5,15x,'Number of Time Pairs')", "GNBRKQ", *index(f, q), pairs)
                    yield from self.free_pairs("GNOQFUNC", f, q, pairs)

    @staticmethod
    def free_pairs(key, field, function, pairs):
        for k in up_to(pairs):
            first, second = real(), real()
            yield ask(key, *index(field, function, k), first, second)
            yield free_record(first.value, second.value)

    def dispexch(self):
        yield banner("Segment Dispersion/Exhange")
        yield from announce("Dispersive Exchanges are being Exported")
        names = ["Surface Water Flow Field", "Porewater Flow Field"]
        fields, scale, conversion = integer(), real(), real()
        yield from asked("(I5,15x,'Number of Exchange Fields')", "GNRFLD", fields)
        for f in up_to(fields):
            name = names[f - 1] if f <= len(names) else f"Exchange Field {f}"
            yield free_record(ended(name.encode(), 40))
            functions = integer()
            yield from asked("(I5,15x,'Number of Exchange Functions')", "GNTEX", Given(f), functions)
            if functions.value > 0:
                yield ask("GSCALER", Given(f), scale)
                yield ask("GCONVR", Given(f), conversion)
                yield record("(2F14.6,2x,'Dispersion Scale & Conversion Factors')", scale.value, conversion.value)
                for q in up_to(functions):
                    yield ask("GEXCHANGEFUNCDESC", *index(f, q), self.description)
                    yield free_record(self.description.value)
                    yield from self.segment_pairs(f, q)
                    pairs = integer()
                    yield from asked("(I5,15x,'Number of Time Pairs')", "GNOBRKS", *index(f, q), pairs)
                    yield from self.free_pairs("GNORFUNC", f, q, pairs)

    @staticmethod
    def segment_pairs(field, function):
        pairs = integer()
        yield from asked("(I5,15x,'Number of segment exchange pairs')", "GNORS", *index(field, function), pairs)
        for p in up_to(pairs):
            first, second, area, length = integer(), integer(), real(), real()
            yield ask("GJRSEG", *index(field, function, p), first)
            yield ask("GIRSEG", *index(field, function, p), second)
            yield ask("GXAREA", *index(field, function, p), area)
            yield ask("GLENGTH", *index(field, function, p), length)
            yield free_record(first.value, second.value, area.value, length.value)

    def boundaries(self):
        self.firsts, self.seconds = series(), series()
        yield banner("Boundary Information")
        keys = "GNOBC", "GSCALB", "GCONVB", "GIBC", "GNBFP", "GALLBOUNDFUNC"
        yield from self.segment_series(keys, "boundaries", "Boundary", free_record)

    def loads(self):
        yield banner("Load Information")
        yield from announce("Loadings are being Exported")
        option = integer()
        yield from asked("(I5,15x,'NPS Input Option (0=No, 1=Yes)',16x,'LOADFILE')", "GLOPT", option)
        if option.value > 0:
            yield from asked("(A512)", "GNPSFILE", self.nps_file)
        keys = "GNOWK", "GSCALW", "GCONVW", "GIWK", "GNBWK", "GALLLOADFUNC"
        yield from self.segment_series(keys, "Loadings", "Loading", partial(record, "(F10.4,5x,F10.4)"))

    def segment_series(self, keys, many, one, pair_record):
        """Of each system the boundaries or loads, each a segment and a series."""
        count_key, scale_key, conversion_key, segment_key, pairs_key, series_key = keys
        yield record("(I5,15x,'Number of Systems')", self.systems.value)
        for s in up_to(self.systems):
            yield free_record(self.system_names[s].value)
            count = integer()
            yield from asked(f"(I5,15x,'Number of {many}')", count_key, Given(s), count)
            if count.value > 0:
                scale, conversion = real(), real()
                yield ask(scale_key, Given(s), scale)
                yield ask(conversion_key, Given(s), conversion)
                yield record(f"(2F14.6,2x,'{one} Scale & Conversion Factors')", scale.value, conversion.value)
                for item in up_to(count):
                    segment, pairs = integer(), integer()
                    yield ask(segment_key, *index(s, item), segment)
                    yield ask(pairs_key, *index(s, item), pairs)
                    yield record(f"(I5,15x,'{one} Segment Number')", segment.value)
                    yield record("(I5,15x,'Number of Time Pairs')", pairs.value)
                    yield ask(series_key, *index(s, item), self.firsts, self.seconds)
                    for k in range(max(pairs.value, 0)):
                        yield pair_record(self.firsts.value[k], self.seconds.value[k])

    def type_of(self, t, isc_key, count_key):
        """Asks for the ISC number and the count of type t; returns the two table entries."""
        isc, count = self.isc.setdefault(t, integer()), self.type_counts.setdefault(t, integer())
        yield ask(isc_key, Given(t), isc)
        yield ask(count_key, Given(isc), count)
        return isc, count

    def time_functions(self):
        self.isc, self.type_counts = {}, {}
        yield banner("Time Functions")
        yield from announce("Time Functions are being Exported")
        types, in_use = integer(), 0
        yield ask("GNUMTFTYPE", types)
        for t in up_to(types):
            isc, count = yield from self.type_of(t, "GTFISC", "GNUMTIMEFUNC")
            count.value = count.value or 1
            for j in up_to(count):
                used = integer()
                yield ask("GTFISUSED", Given(isc), Given(j), used)
                in_use += used.value == 1
        yield record("(I5,15x,'Number of Time Functions')", in_use)

        for t in up_to(types):
            isc, count = yield from self.type_of(t, "GTFISC", "GNUMTIMEFUNC")
            count.value = count.value or 1
            for j in up_to(count):
                used = integer()
                yield ask("GTFISUSED", Given(isc), Given(j), used)
                if used.value != 1:
                    continue
                self.description.value = bytes(40) + b" " * 40
                yield ask("GTFDESC", Given(isc), Given(j), self.description)
                yield record("(5X,I3,5x,I3,5X,A40)", isc.value, j, self.description.value)
                pairs = integer(0)
                yield ask("GNBRKTF", Given(isc), Given(j), pairs)
                if pairs.value > 0:
                    yield record("(I5,15x,'Number of Time Pairs')", pairs.value)
                    for k in up_to(pairs):
                        first, second = real(), real()
                        yield ask("GBRKTF", Given(isc), Given(j), Given(k), first, second)
                        yield record("(F10.4,5X,F10.4)", first.value, second.value)

    def parameters(self):
        yield banner("Segment Parameters")
        yield from announce("Parameter Values are being Exported")
        yield record("(I5,15x,'Number of Segments')", self.segments.value)
        types, in_use, flag = integer(), 0, integer()
        yield ask("GNUMPARAMTYPE", types)
        for t in up_to(types):
            isc, count = yield from self.type_of(t, "GPARAMISC", "GNUMPARAMBYISC")
            for j in up_to(count):
                yield ask("GPARAMISUSED", Given(isc), Given(j), flag)
                in_use += flag.value >= 1
        yield record("(I5,15x,'Number of Segment Parameters')", in_use)

        yield record("('======================== Scale Factors ====================================')")
        descriptions = entries(types, lambda: text(60))
        for t in up_to(types):
            isc, count = yield from self.type_of(t, "GPARAMISC", "GNUMPARAMBYISC")
            for j in up_to(count):
                yield ask("GPARAMISUSED", Given(isc), Given(j), flag)
                if flag.value >= 1:
                    scale = real()
                    yield ask("GDESCPARAM", Given(isc), Given(j), descriptions[t])
                    yield ask("GSCALEPARAMBYISC", Given(isc), Given(j), scale)
                    yield record(
                        "('ISC #: ',I5,' Instance: ',I3,' Scale: ',F10.4,' Description:',A40 )",
                        isc.value,
                        j,
                        scale.value,
                        descriptions[t].value,
                    )

        yield record("('======================== Segment Assignments ====================================')")
        for s in up_to(self.segments):
            yield record("(I5,5X,'Segment')", s)
            for t in up_to(types):
                isc = self.isc[t]
                for j in up_to(self.type_counts[t]):
                    yield ask("GPARAMISUSED", Given(isc), Given(j), flag)
                    if flag.value >= 1:
                        value = real()
                        yield ask("GCONSTPARAM", Given(s), Given(isc), Given(j), value)
                        yield record(
                            "('Parameter: ',I5,5X,' Instance: ',I3,'  Value: ',F20.4)", isc.value, j, value.value
                        )

    def constants(self):
        yield banner("Constants")
        yield from announce("Constants are being Exported")
        types, in_use, flag, value = integer(), 0, integer(), real()
        yield ask("GNUMCONST", types)
        for t in up_to(types):
            isc, count = yield from self.type_of(t, "GCONSTTYPEISC", "GNUMCONSTBYISC")
            for j in up_to(count):
                yield ask("GCONSTISUSED", Given(isc), Given(j), flag)
                in_use += flag.value >= 1
        yield record("(I5,15x,'Number of Constants')", in_use)

        for t in up_to(types):
            isc, count = yield from self.type_of(t, "GCONSTTYPEISC", "GNUMCONSTBYISC")
            for j in up_to(count):
                yield ask("GCONSTISUSED", Given(isc), Given(j), flag)
                if flag.value >= 1:
                    yield ask("GCONSTVALUEBYISC", Given(isc), Given(j), value)
                    description = text(60, bytes(40) + b" " * 20)
                    yield ask("GCONSTDESCBYISC", Given(isc), Given(j), description)
                    yield record(
                        "('ISC #: ',I5,' Instance: ',I5,' Value: ',f20.4,'  Desc: ',A40)",
                        isc.value,
                        j,
                        value.value,
                        ended(description.value, 60),
                    )

    def initial_conditions(self):
        yield banner("Initial Conditions")
        yield from announce("Initial concentrations are being Exported")
        yield record("(I5)", self.systems.value)
        yield record("(I5)", self.segments.value)
        for s in up_to(self.systems):
            yield record("(5x,'Initial conditions for system',I3,1x,A15)", s, self.system_names[s].value)
            field, density, highest = integer(), real(), real()
            yield ask("GIFIELD", Given(s), field)
            yield ask("GDENSITY", Given(s), density)
            yield ask("GCMAX", Given(s), highest)
            yield record("(I5,15x,'Solids Transport Field')", field.value)
            yield record("(F10.3,10x,'Solids Density, g/mL')", density.value)
            yield record("(F15.4,5x,'Maximum Allowed Concentration')", highest.value)
            yield record("('  Seg   Conc   DissF')")
            for g in up_to(self.segments):
                concentration, dissolved = real(), real()
                yield ask("GINITC", *index(s, g), concentration)
                yield ask("GFDISS", *index(s, g), dissolved)
                yield free_record(g, concentration.value, dissolved.value)
