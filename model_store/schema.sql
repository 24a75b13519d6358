-- A model database: one SQLite file holds one water-quality model.
--
-- Items carry numbers from 1 without gaps; in tables whose only key is `number`, leaving it out takes the next one.
-- Texts are of the characters that ISO 8859-1 has. Reals are served in single precision, about 7 digits. Units named
-- here are the customary ones; nothing is converted, checked for plausibility or interpreted, and the scale and
-- conversion factors are passed on beside the values, never applied. Times are days from the start of the simulation;
-- a series is straight between its pairs and keeps its first and last value outside them. Codes that no comment here
-- explains are the engine's, and nothing judges them.
-- Foreign keys bind only after PRAGMA foreign_keys = ON, in each connection; a load checks them all the same.

PRAGMA application_id = 1447382093; -- "VELM"
PRAGMA user_version = 1;

-- The run: exactly one row.
CREATE TABLE model (
    number INTEGER PRIMARY KEY CONSTRAINT "model.number is 1" CHECK (number = 1), -- always 1; may be left out
    model_type INTEGER NOT NULL DEFAULT 0, -- code of the engine's module
    start_date_1 INTEGER NOT NULL DEFAULT 0, -- date of the start, first of three integers in the engine's order
    start_date_2 INTEGER NOT NULL DEFAULT 0, -- date of the start, second integer
    start_date_3 INTEGER NOT NULL DEFAULT 0, -- date of the start, third integer
    start_time_1 INTEGER NOT NULL DEFAULT 0, -- time of day of the start, first of three integers in the engine's order
    start_time_2 INTEGER NOT NULL DEFAULT 0, -- time of day of the start, second integer
    start_time_3 INTEGER NOT NULL DEFAULT 0, -- time of day of the start, third integer
    skip_date_1 INTEGER NOT NULL DEFAULT 0, -- date up to which hydrodynamics are skipped, first of three integers
    skip_date_2 INTEGER NOT NULL DEFAULT 0, -- date up to which hydrodynamics are skipped, second integer
    skip_date_3 INTEGER NOT NULL DEFAULT 0, -- date up to which hydrodynamics are skipped, third integer
    skip_time_1 INTEGER NOT NULL DEFAULT 0, -- time of day up to which hydrodynamics are skipped, first of three integers
    skip_time_2 INTEGER NOT NULL DEFAULT 0, -- time of day up to which hydrodynamics are skipped, second integer
    skip_time_3 INTEGER NOT NULL DEFAULT 0, -- time of day up to which hydrodynamics are skipped, third integer
    julian_end_time REAL NOT NULL DEFAULT 0, -- days: end of the simulation
    mass_balance_table_output INTEGER NOT NULL DEFAULT 0, -- code: which system the mass balance table is of
    solution_technique INTEGER NOT NULL DEFAULT 0, -- code: how the engine integrates
    negative_solution INTEGER NOT NULL DEFAULT 0, -- code: whether concentrations may become negative
    restart INTEGER NOT NULL DEFAULT 0, -- code: whether a restart file is read or written
    time_optimization INTEGER NOT NULL DEFAULT 0, -- code: how the engine chooses its time step
    water_quality_linkage INTEGER NOT NULL DEFAULT 0, -- code: link to another water-quality module
    topt_factor REAL NOT NULL DEFAULT 0, -- fraction of the largest stable time step that is taken
    maximum_time_step REAL NOT NULL DEFAULT 0, -- days
    minimum_time_step REAL NOT NULL DEFAULT 0, -- days
    print_interval REAL NOT NULL DEFAULT 0, -- days: from one output to the next
    bed_volume_option INTEGER NOT NULL DEFAULT 0, -- code: bed of constant or of changing volume
    bed_compaction_time_step REAL NOT NULL DEFAULT 0, -- days
    volume_scale_factor REAL NOT NULL DEFAULT 1, -- factor on the segments' volumes, to try variants
    volume_conversion_factor REAL NOT NULL DEFAULT 1, -- factor from the unit of the segments' volumes to m3
    hydrodynamic_file TEXT NOT NULL DEFAULT '' CONSTRAINT "model.hydrodynamic_file has at most 512 characters" CHECK (length(hydrodynamic_file) <= 512), -- path of the hydrodynamic file; exported when segment 1 has flow option 3; at most 512 characters
    nps_option INTEGER NOT NULL DEFAULT 0, -- above 0: non-point loads also come from nps_file
    nps_file TEXT NOT NULL DEFAULT '' CONSTRAINT "model.nps_file has at most 512 characters" CHECK (length(nps_file) <= 512) -- path of the file of non-point loads; at most 512 characters
) STRICT;

-- A transported constituent: temperature, an oxygen, nutrient or solids fraction.
CREATE TABLE system (
    number INTEGER PRIMARY KEY CONSTRAINT "system.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps
    name TEXT NOT NULL CONSTRAINT "system.name has at most 30 characters" CHECK (length(name) <= 30), -- at most 30 characters
    tag TEXT NOT NULL DEFAULT '' CONSTRAINT "system.tag has at most 5 characters" CHECK (length(tag) <= 5), -- short name; at most 5 characters
    boundary_scale_factor REAL NOT NULL DEFAULT 1, -- factor on the system's boundary values, to try variants
    boundary_conversion_factor REAL NOT NULL DEFAULT 1, -- factor from the unit of the boundary values to mg/L
    load_scale_factor REAL NOT NULL DEFAULT 1, -- factor on the system's load values, to try variants
    load_conversion_factor REAL NOT NULL DEFAULT 1, -- factor from the unit of the load values to kg/day
    solids_transport_field INTEGER NOT NULL DEFAULT 0, -- number of the flow field that carries the system's solids
    solids_density REAL NOT NULL DEFAULT 0, -- g/mL
    maximum_concentration REAL NOT NULL DEFAULT 0 -- mg/L
) STRICT;

-- A computational element of the water body or its bed.
CREATE TABLE segment (
    number INTEGER PRIMARY KEY CONSTRAINT "segment.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps
    name TEXT NOT NULL DEFAULT '' CONSTRAINT "segment.name has at most 40 characters" CHECK (length(name) <= 40), -- at most 40 characters
    bottom_segment INTEGER NOT NULL DEFAULT 0 CONSTRAINT "segment.bottom_segment is 0 or more" CHECK (bottom_segment >= 0), -- number of the segment below; 0 for none
    type INTEGER NOT NULL DEFAULT 0, -- 1 surface water, 2 water below it, 3 surface bed, 4 bed below it
    flow_option INTEGER NOT NULL DEFAULT 0, -- code; 3 for segment 1 when flows come from a hydrodynamic file
    volume REAL NOT NULL DEFAULT 0, -- m3: after the model's volume factors
    velocity_multiplier REAL NOT NULL DEFAULT 0, -- a in velocity (m/s) = a * flow ^ b
    velocity_exponent REAL NOT NULL DEFAULT 0, -- b in velocity (m/s) = a * flow ^ b
    depth_multiplier REAL NOT NULL DEFAULT 0, -- c in depth (m) = c * flow ^ d
    depth_exponent REAL NOT NULL DEFAULT 0, -- d in depth (m) = c * flow ^ d
    slope REAL NOT NULL DEFAULT 0, -- m/m: fall along the length
    length REAL NOT NULL DEFAULT 0, -- m: along the flow
    width REAL NOT NULL DEFAULT 0, -- m
    roughness REAL NOT NULL DEFAULT 0, -- Manning's n
    minimum_depth REAL NOT NULL DEFAULT 0, -- m: depth that stays at no flow
    initial_surface_elevation REAL NOT NULL DEFAULT 0, -- m: water level at the start
    bottom_elevation REAL NOT NULL DEFAULT 0, -- m
    side_slope REAL NOT NULL DEFAULT 0, -- m/m: horizontal to vertical
    initial_depth REAL NOT NULL DEFAULT 0, -- m
    weir_height REAL NOT NULL DEFAULT 0, -- m: 0 for no weir
    weir_type REAL NOT NULL DEFAULT 0 -- code
) STRICT;

-- What a segment holds of a system at the start: a row for every system and segment.
CREATE TABLE initial_condition (
    system INTEGER NOT NULL REFERENCES system (number), -- number of the system
    segment INTEGER NOT NULL REFERENCES segment (number), -- number of the segment
    concentration REAL NOT NULL, -- mg/L
    dissolved_fraction REAL NOT NULL DEFAULT 1, -- 0 to 1
    PRIMARY KEY (system, segment)
) STRICT, WITHOUT ROWID;

-- What flows: 1 surface water, 2 pore water, 3 to 5 solids 1 to 3, 6 evaporation and precipitation.
CREATE TABLE flow_field (
    number INTEGER PRIMARY KEY CONSTRAINT "flow_field.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps
    scale_factor REAL NOT NULL DEFAULT 1, -- factor on the field's flows, to try variants
    conversion_factor REAL NOT NULL DEFAULT 1 -- factor from the unit of the flows to m3/s
) STRICT;

-- A flow that changes with time along paths through the segments.
CREATE TABLE flow_function (
    flow_field INTEGER NOT NULL REFERENCES flow_field (number), -- number of the flow field
    number INTEGER NOT NULL CONSTRAINT "flow_function.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the flow field
    description TEXT NOT NULL DEFAULT '' CONSTRAINT "flow_function.description has at most 80 characters" CHECK (length(description) <= 80), -- at most 80 characters
    PRIMARY KEY (flow_field, number)
) STRICT, WITHOUT ROWID;

-- One step of a flow function's way. A positive flow goes from first_segment to second_segment, a negative one back.
CREATE TABLE flow_path (
    flow_field INTEGER NOT NULL, -- number of the flow field
    flow_function INTEGER NOT NULL, -- number of the flow function in the flow field
    number INTEGER NOT NULL CONSTRAINT "flow_path.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the flow function
    first_segment INTEGER NOT NULL CONSTRAINT "flow_path.first_segment is 0 or more" CHECK (first_segment >= 0), -- number of a segment; 0 for the world outside
    second_segment INTEGER NOT NULL CONSTRAINT "flow_path.second_segment is 0 or more" CHECK (second_segment >= 0), -- number of a segment; 0 for the world outside
    fraction REAL NOT NULL DEFAULT 1, -- part of the function's flow that takes this step
    PRIMARY KEY (flow_field, flow_function, number),
    FOREIGN KEY (flow_field, flow_function) REFERENCES flow_function (flow_field, number)
) STRICT, WITHOUT ROWID;

-- The flow function's time series.
CREATE TABLE flow_value (
    flow_field INTEGER NOT NULL, -- number of the flow field
    flow_function INTEGER NOT NULL, -- number of the flow function in the flow field
    number INTEGER NOT NULL CONSTRAINT "flow_value.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the flow function
    time REAL NOT NULL, -- days
    value REAL NOT NULL, -- flow, m3/s after the flow field's factors
    PRIMARY KEY (flow_field, flow_function, number),
    FOREIGN KEY (flow_field, flow_function) REFERENCES flow_function (flow_field, number)
) STRICT, WITHOUT ROWID;

-- What mixes: 1 surface water, 2 pore water.
CREATE TABLE exchange_field (
    number INTEGER PRIMARY KEY CONSTRAINT "exchange_field.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps
    scale_factor REAL NOT NULL DEFAULT 1, -- factor on the field's dispersion values, to try variants
    conversion_factor REAL NOT NULL DEFAULT 1 -- factor from the unit of the dispersion values to m2/s
) STRICT;

-- A dispersion that changes with time between pairs of segments.
CREATE TABLE exchange_function (
    exchange_field INTEGER NOT NULL REFERENCES exchange_field (number), -- number of the exchange field
    number INTEGER NOT NULL CONSTRAINT "exchange_function.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the exchange field
    description TEXT NOT NULL DEFAULT '' CONSTRAINT "exchange_function.description has at most 80 characters" CHECK (length(description) <= 80), -- at most 80 characters
    PRIMARY KEY (exchange_field, number)
) STRICT, WITHOUT ROWID;

-- Two segments that an exchange function mixes.
CREATE TABLE exchange_pair (
    exchange_field INTEGER NOT NULL, -- number of the exchange field
    exchange_function INTEGER NOT NULL, -- number of the exchange function in the exchange field
    number INTEGER NOT NULL CONSTRAINT "exchange_pair.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the exchange function
    first_segment INTEGER NOT NULL CONSTRAINT "exchange_pair.first_segment is 0 or more" CHECK (first_segment >= 0), -- number of a segment; 0 for the world outside
    second_segment INTEGER NOT NULL CONSTRAINT "exchange_pair.second_segment is 0 or more" CHECK (second_segment >= 0), -- number of a segment; 0 for the world outside
    area REAL NOT NULL, -- m2: cross section through which the two mix
    length REAL NOT NULL, -- m: mixing length
    PRIMARY KEY (exchange_field, exchange_function, number),
    FOREIGN KEY (exchange_field, exchange_function) REFERENCES exchange_function (exchange_field, number)
) STRICT, WITHOUT ROWID;

-- The exchange function's time series.
CREATE TABLE exchange_value (
    exchange_field INTEGER NOT NULL, -- number of the exchange field
    exchange_function INTEGER NOT NULL, -- number of the exchange function in the exchange field
    number INTEGER NOT NULL CONSTRAINT "exchange_value.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the exchange function
    time REAL NOT NULL, -- days
    value REAL NOT NULL, -- dispersion, m2/s after the exchange field's factors
    PRIMARY KEY (exchange_field, exchange_function, number),
    FOREIGN KEY (exchange_field, exchange_function) REFERENCES exchange_function (exchange_field, number)
) STRICT, WITHOUT ROWID;

-- Where a system's concentration is given from outside.
CREATE TABLE boundary (
    system INTEGER NOT NULL REFERENCES system (number), -- number of the system
    number INTEGER NOT NULL CONSTRAINT "boundary.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the system
    segment INTEGER NOT NULL REFERENCES segment (number), -- number of the segment at the boundary
    PRIMARY KEY (system, number)
) STRICT, WITHOUT ROWID;

-- The boundary's time series: at most 100,000 rows for a boundary.
CREATE TABLE boundary_value (
    system INTEGER NOT NULL, -- number of the system
    boundary INTEGER NOT NULL, -- number of the boundary in the system
    number INTEGER NOT NULL CONSTRAINT "boundary_value.number is 1 to 100000" CHECK (number BETWEEN 1 AND 100000), -- from 1 without gaps in the boundary
    time REAL NOT NULL, -- days
    value REAL NOT NULL, -- concentration, mg/L after the system's boundary factors
    PRIMARY KEY (system, boundary, number),
    FOREIGN KEY (system, boundary) REFERENCES boundary (system, number)
) STRICT, WITHOUT ROWID;

-- Where mass of a system enters.
CREATE TABLE load (
    system INTEGER NOT NULL REFERENCES system (number), -- number of the system
    number INTEGER NOT NULL CONSTRAINT "load.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the system
    segment INTEGER NOT NULL REFERENCES segment (number), -- number of the segment that the load enters
    PRIMARY KEY (system, number)
) STRICT, WITHOUT ROWID;

-- The load's time series: at most 100,000 rows for a load.
CREATE TABLE load_value (
    system INTEGER NOT NULL, -- number of the system
    load INTEGER NOT NULL, -- number of the load in the system
    number INTEGER NOT NULL CONSTRAINT "load_value.number is 1 to 100000" CHECK (number BETWEEN 1 AND 100000), -- from 1 without gaps in the load
    time REAL NOT NULL, -- days
    value REAL NOT NULL, -- load, kg/day after the system's load factors
    PRIMARY KEY (system, load, number),
    FOREIGN KEY (system, load) REFERENCES load (system, number)
) STRICT, WITHOUT ROWID;

-- A kind of environmental time function that the engine knows.
CREATE TABLE time_function_type (
    number INTEGER PRIMARY KEY CONSTRAINT "time_function_type.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps: the place in the file, not the ISC number
    isc INTEGER NOT NULL UNIQUE -- the engine's number for the kind
) STRICT;

-- A time function of that kind, such as the water temperature of one reach.
CREATE TABLE time_function (
    time_function_type INTEGER NOT NULL REFERENCES time_function_type (number), -- number of the type, not its ISC number
    number INTEGER NOT NULL CONSTRAINT "time_function.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the type
    used INTEGER NOT NULL DEFAULT 1 CONSTRAINT "time_function.used is 0 or 1" CHECK (used IN (0, 1)), -- 1: exported; 0: kept for later
    description TEXT NOT NULL DEFAULT '' CONSTRAINT "time_function.description has at most 80 characters" CHECK (length(description) <= 80), -- at most 80 characters
    PRIMARY KEY (time_function_type, number)
) STRICT, WITHOUT ROWID;

-- The time function's time series.
CREATE TABLE time_function_value (
    time_function_type INTEGER NOT NULL, -- number of the type, not its ISC number
    time_function INTEGER NOT NULL, -- number of the time function in the type
    number INTEGER NOT NULL CONSTRAINT "time_function_value.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the time function
    time REAL NOT NULL, -- days
    value REAL NOT NULL, -- in the unit of the kind, such as degrees Celsius
    PRIMARY KEY (time_function_type, time_function, number),
    FOREIGN KEY (time_function_type, time_function) REFERENCES time_function (time_function_type, number)
) STRICT, WITHOUT ROWID;

-- A kind of parameter that varies from segment to segment.
CREATE TABLE parameter_type (
    number INTEGER PRIMARY KEY CONSTRAINT "parameter_type.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps: the place in the file, not the ISC number
    isc INTEGER NOT NULL UNIQUE -- the engine's number for the kind
) STRICT;

-- A parameter of that kind.
CREATE TABLE parameter (
    parameter_type INTEGER NOT NULL REFERENCES parameter_type (number), -- number of the type, not its ISC number
    number INTEGER NOT NULL CONSTRAINT "parameter.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the type
    used INTEGER NOT NULL DEFAULT 1 CONSTRAINT "parameter.used is 0 or 1" CHECK (used IN (0, 1)), -- 1: exported; 0: kept for later
    description TEXT NOT NULL DEFAULT '' CONSTRAINT "parameter.description has at most 60 characters" CHECK (length(description) <= 60), -- at most 60 characters
    scale_factor REAL NOT NULL DEFAULT 1, -- factor on the parameter's values
    PRIMARY KEY (parameter_type, number)
) STRICT, WITHOUT ROWID;

-- The parameter in each segment: a row for every parameter and segment.
CREATE TABLE parameter_value (
    parameter_type INTEGER NOT NULL, -- number of the type, not its ISC number
    parameter INTEGER NOT NULL, -- number of the parameter in the type
    segment INTEGER NOT NULL REFERENCES segment (number), -- number of the segment
    value REAL NOT NULL, -- in the unit of the kind
    PRIMARY KEY (parameter_type, parameter, segment),
    FOREIGN KEY (parameter_type, parameter) REFERENCES parameter (parameter_type, number)
) STRICT, WITHOUT ROWID;

-- A kind of constant of the whole model.
CREATE TABLE constant_type (
    number INTEGER PRIMARY KEY CONSTRAINT "constant_type.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps: the place in the file, not the ISC number
    isc INTEGER NOT NULL UNIQUE -- the engine's number for the kind
) STRICT;

-- A constant of that kind.
CREATE TABLE constant (
    constant_type INTEGER NOT NULL REFERENCES constant_type (number), -- number of the type, not its ISC number
    number INTEGER NOT NULL CONSTRAINT "constant.number is 1 or more" CHECK (number >= 1), -- from 1 without gaps in the type
    used INTEGER NOT NULL DEFAULT 1 CONSTRAINT "constant.used is 0 or 1" CHECK (used IN (0, 1)), -- 1: exported; 0: kept for later
    description TEXT NOT NULL DEFAULT '' CONSTRAINT "constant.description has at most 60 characters" CHECK (length(description) <= 60), -- at most 60 characters
    value REAL NOT NULL, -- in the unit of the kind
    PRIMARY KEY (constant_type, number)
) STRICT, WITHOUT ROWID;

-- Where a segment is drawn, in a plane of any unit and origin. No export has it; a segment may be without, a file without the table.
CREATE TABLE segment_place (
    segment INTEGER PRIMARY KEY REFERENCES segment (number), -- number of the segment
    x REAL NOT NULL, -- to the right
    y REAL NOT NULL -- upwards
) STRICT;
