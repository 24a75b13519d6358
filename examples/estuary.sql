-- The Alder estuary: a river and its tributary meet, part again around an island and run through an estuary to the sea.
--
--   Alder River 1 -- 2 --.               .-- north channel 5 -- 6 --.
--                         4 confluence --|                          9 -- 10 -- 11 -- 12 -- sea
--   Moor Brook 3 --------'               '-- south channel 7 -- 8 --'    13 -- 14 -- 15 -- sea
--
-- From segment 10 on the water lies in two layers: brackish water runs out above (10 to 12), sea water runs in below
-- (13 to 15). Under the water lies a bed (16 to 27), under the bed of the estuary a deeper one (28 to 31). The river,
-- its numbers and its people are made up; the magnitudes are those of a small temperate estuary.
--
-- The run is one year, in days from 0 to 365. Every daily value is its mean, a yearly cosine and a variation that
-- stands for the weather: the sum of three sines whose periods (23, 9.7 and 5.3 days) never fall together, so that the
-- model is the same each time it is made. To change a season, change its row in the table of the block.

-- The run. Dates are year, month, day; times are hour, minute, second.
INSERT INTO model (model_type, start_date_1, start_date_2, start_date_3, skip_date_1, skip_date_2, skip_date_3,
                   julian_end_time, mass_balance_table_output, solution_technique, negative_solution, restart,
                   time_optimization, water_quality_linkage, topt_factor, maximum_time_step, minimum_time_step,
                   print_interval, bed_volume_option, bed_compaction_time_step,
                   volume_scale_factor, volume_conversion_factor)
VALUES (1, 2023, 1, 1, 2023, 1, 1,
        365, 6, 1, 0, 0,
        1, 0, 0.9, 0.25, 0.0001,
        1, 0, 1,
        1, 1);

-- What is transported. Boundary values of phytoplankton are measured as chlorophyll (ug/L): 40 g of carbon a g of
-- chlorophyll make a conversion factor of 0.04 to mg/L. Suspended solids move with the surface water (field 1).
INSERT INTO system (number, name, tag, boundary_conversion_factor, solids_transport_field, solids_density,
                    maximum_concentration)
VALUES (1, 'Ammonia nitrogen',          'NH3',   1,    0, 1,     100),
       (2, 'Nitrate nitrogen',          'NO3',   1,    0, 1,     100),
       (3, 'Inorganic phosphate',       'PO4',   1,    0, 1,      50),
       (4, 'Phytoplankton carbon',      'PHYTC', 0.04, 1, 1.04,   50),
       (5, 'Ultimate CBOD',             'CBODU', 1,    0, 1,     500),
       (6, 'Dissolved oxygen',          'DO',    1,    0, 1,      30),
       (7, 'Salinity',                  'SAL',   1,    0, 1,      45),
       (8, 'Suspended solids',          'TSS',   1,    1, 2.65, 1500000);

-- Segments of water. Banks are vertical: volume = length * width * depth. In the rivers velocity and depth follow the
-- flow through the powers of a wide channel (0.4 and 0.6), set so that the mean flow gives the initial depth; where the
-- tide rules (from 9 on) its mean speed stands instead, and neither follows the flow.
-- type: 1 surface water, 2 water below it. In m, m/m, m3/s and m/s.
WITH water(number, name, below, type, length, width, depth, surface, slope, roughness, mean_flow, tide, weir) AS (VALUES
    ( 1, 'Alder River, above the mill',   16, 1, 4000,   35, 1.6,  4.20, 0.0004,  0.035, 22.1, NULL, 1.1),
    ( 2, 'Alder River, below the mill',   17, 1, 4000,   40, 1.9,  2.60, 0.0003,  0.035, 22.2, NULL, 0),
    ( 3, 'Moor Brook',                    18, 1, 3000,   14, 0.8,  3.10, 0.0006,  0.040,  3.0, NULL, 0),
    ( 4, 'Confluence',                    19, 1, 2500,   55, 2.3,  1.50, 0.0002,  0.032, 25.2, NULL, 0),
    ( 5, 'North channel, upper',          20, 1, 3000,   45, 2.4,  0.90, 0.00015, 0.030, 15.6, NULL, 0),
    ( 6, 'North channel, lower',          21, 1, 3000,   60, 2.8,  0.50, 0.0001,  0.030, 16.0, NULL, 0),
    ( 7, 'South channel, upper',          22, 1, 3500,   28, 1.9,  0.90, 0.00012, 0.032,  9.6, NULL, 0),
    ( 8, 'South channel, lower',          23, 1, 3500,   36, 2.2,  0.50, 0.0001,  0.032,  9.6, NULL, 0),
    ( 9, 'Upper estuary',                 24, 1, 4000,  220, 3.6,  0.25, 0.00005, 0.027, NULL, 0.40, 0),
    (10, 'Middle estuary, surface water', 13, 1, 5000,  600, 2.5,  0.15, 0.00001, 0.025, NULL, 0.45, 0),
    (11, 'Lower estuary, surface water',  14, 1, 6000, 1100, 3.0,  0.10, 0.00001, 0.025, NULL, 0.35, 0),
    (12, 'Bay, surface water',            15, 1, 7000, 2400, 4.0,  0.05, 0.00001, 0.025, NULL, 0.20, 0),
    (13, 'Middle estuary, bottom water',  25, 2, 5000,  450, 3.0, -2.35, 0,       0.025, NULL, 0.30, 0),
    (14, 'Lower estuary, bottom water',   26, 2, 6000,  850, 5.0, -2.90, 0,       0.025, NULL, 0.25, 0),
    (15, 'Bay, bottom water',             27, 2, 7000, 1500, 9.0, -3.95, 0,       0.025, NULL, 0.12, 0))
INSERT INTO segment (number, name, bottom_segment, type, flow_option, volume,
                     velocity_multiplier, velocity_exponent, depth_multiplier, depth_exponent,
                     slope, length, width, roughness, minimum_depth, initial_surface_elevation, bottom_elevation,
                     initial_depth, weir_height, weir_type)
SELECT number, name, below, type, 1, length * width * depth,
       ifnull(tide, round(mean_flow / (width * depth) / pow(mean_flow, 0.4), 5)), iif(tide, 0, 0.4),
       iif(tide, depth, round(depth / pow(mean_flow, 0.6), 5)), iif(tide, 0, 0.6),
       slope, length, width, roughness, depth / 10, surface, surface - depth,
       depth, weir, iif(weir > 0, 1, 0)
FROM water;

-- The bed under each column of water, 10 cm thick, and under the estuary's bed one of 30 cm.
-- type: 3 surface bed, 4 bed below it. A bed's surface is the bottom of what lies above it.
INSERT INTO segment (number, name, bottom_segment, type, volume, length, width, initial_surface_elevation,
                     bottom_elevation, initial_depth)
SELECT bottom_segment, 'Bed of ' || replace(name, ', bottom water', ''),
       iif(bottom_segment >= 24, bottom_segment + 4, 0), 3, length * width * 0.1, length, width, bottom_elevation,
       bottom_elevation - 0.1, 0.1
FROM segment
WHERE bottom_segment >= 16;

INSERT INTO segment (number, name, type, volume, length, width, initial_surface_elevation, bottom_elevation,
                     initial_depth)
SELECT bottom_segment, replace(name, 'Bed of', 'Deep bed of'), 4, length * width * 0.3, length, width,
       bottom_elevation, bottom_elevation - 0.3, 0.3
FROM segment
WHERE bottom_segment >= 28;

-- Flow: 1 surface water, 2 pore water, both in m3/s.
INSERT INTO flow_field (number, scale_factor, conversion_factor)
VALUES (1, 1, 1),
       (2, 1, 1);

INSERT INTO flow_function (flow_field, number, description)
VALUES (1, 1, 'Alder River inflow (m3/s)'),
       (1, 2, 'Moor Brook inflow (m3/s)'),
       (1, 3, 'Treated effluent of the town of Alderhaven (m3/s)'),
       (1, 4, 'Estuarine circulation: sea water in below, out above (m3/s)'),
       (2, 1, 'Seepage through the river bed (m3/s)'),
       (2, 2, 'Seepage through the bed of the estuary (m3/s)');

-- Where each flow goes, as parts of it; segment 0 is the world outside. In every function each segment passes on just
-- what it takes in. The rivers part at the island: 62 % go north, 38 % south. Sea water rises on its way in:
-- 25 % in the bay, 35 % in the lower and the remaining 40 % in the middle estuary.
WITH path(flow_field, flow_function, number, first_segment, second_segment, fraction) AS (VALUES
    (1, 1, 1, 0, 1, 1.0), (1, 1, 2, 1, 2, 1.0), (1, 1, 3, 2, 4, 1.0),
    (1, 1, 4, 4, 5, 0.62), (1, 1, 5, 5, 6, 0.62), (1, 1, 6, 6, 9, 0.62),
    (1, 1, 7, 4, 7, 0.38), (1, 1, 8, 7, 8, 0.38), (1, 1, 9, 8, 9, 0.38),
    (1, 1, 10, 9, 10, 1.0), (1, 1, 11, 10, 11, 1.0), (1, 1, 12, 11, 12, 1.0), (1, 1, 13, 12, 0, 1.0),

    (1, 2, 1, 0, 3, 1.0), (1, 2, 2, 3, 4, 1.0),
    (1, 2, 3, 4, 5, 0.62), (1, 2, 4, 5, 6, 0.62), (1, 2, 5, 6, 9, 0.62),
    (1, 2, 6, 4, 7, 0.38), (1, 2, 7, 7, 8, 0.38), (1, 2, 8, 8, 9, 0.38),
    (1, 2, 9, 9, 10, 1.0), (1, 2, 10, 10, 11, 1.0), (1, 2, 11, 11, 12, 1.0), (1, 2, 12, 12, 0, 1.0),

    (1, 3, 1, 0, 6, 1.0), (1, 3, 2, 6, 9, 1.0), (1, 3, 3, 9, 10, 1.0), (1, 3, 4, 10, 11, 1.0),
    (1, 3, 5, 11, 12, 1.0), (1, 3, 6, 12, 0, 1.0),

    (1, 4, 1, 0, 15, 1.0), (1, 4, 2, 15, 12, 0.25), (1, 4, 3, 15, 14, 0.75),
    (1, 4, 4, 14, 11, 0.35), (1, 4, 5, 14, 13, 0.40), (1, 4, 6, 13, 10, 0.40),
    (1, 4, 7, 10, 11, 0.40), (1, 4, 8, 11, 12, 0.75), (1, 4, 9, 12, 0, 1.0),

    (2, 1, 1, 0, 16, 0.45), (2, 1, 2, 0, 17, 0.35), (2, 1, 3, 0, 18, 0.20),
    (2, 1, 4, 16, 1, 0.45), (2, 1, 5, 17, 2, 0.35), (2, 1, 6, 18, 3, 0.20),
    (2, 1, 7, 1, 2, 0.45), (2, 1, 8, 2, 4, 0.80), (2, 1, 9, 3, 4, 0.20),
    (2, 1, 10, 4, 5, 0.62), (2, 1, 11, 5, 6, 0.62), (2, 1, 12, 6, 9, 0.62),
    (2, 1, 13, 4, 7, 0.38), (2, 1, 14, 7, 8, 0.38), (2, 1, 15, 8, 9, 0.38),
    (2, 1, 16, 9, 10, 1.0), (2, 1, 17, 10, 11, 1.0), (2, 1, 18, 11, 12, 1.0), (2, 1, 19, 12, 0, 1.0),

    (2, 2, 1, 0, 28, 0.50), (2, 2, 2, 0, 29, 0.30), (2, 2, 3, 0, 30, 0.20),
    (2, 2, 4, 28, 24, 0.50), (2, 2, 5, 24, 9, 0.50), (2, 2, 6, 9, 10, 0.50),
    (2, 2, 7, 29, 25, 0.30), (2, 2, 8, 25, 13, 0.30), (2, 2, 9, 13, 10, 0.30), (2, 2, 10, 10, 11, 0.80),
    (2, 2, 11, 30, 26, 0.20), (2, 2, 12, 26, 14, 0.20), (2, 2, 13, 14, 11, 0.20),
    (2, 2, 14, 11, 12, 1.0), (2, 2, 15, 12, 0, 1.0))
INSERT INTO flow_path (flow_field, flow_function, number, first_segment, second_segment, fraction)
SELECT flow_field, flow_function, number, first_segment, second_segment, fraction FROM path;

-- Daily flows: those of the season and of the weather, and floods. A flood comes while the weather is wetter than 0.25
-- (it goes from -1 to 1) and adds to the season's flow its multiple by `flood`, most in the wettest season.
WITH RECURSIVE
    day(day) AS (SELECT 0 UNION ALL SELECT day + 1 FROM day WHERE day < 365),
    weather(day, wet) AS (
        SELECT day, (sin(2 * pi() * day / 23) + sin(2 * pi() * day / 9.7) + sin(2 * pi() * day / 5.3)) / 3 FROM day),
    season(flow_field, flow_function, mean, amplitude, peak, variation, flood) AS (VALUES
        (1, 1, 20.0, 11.0, 35, 2.0,  2.4),
        (1, 2,  2.6,  1.5, 30, 0.3,  3.2),
        (1, 3,  0.34, 0.03, 210, 0.02, 0.3),
        (1, 4, 60.0, 14.0, 30, 3.0,  0),
        (2, 1,  0.24, 0.08, 70, 0,   0),
        (2, 2,  0.30, 0.05, 80, 0,   0))
INSERT INTO flow_value (flow_field, flow_function, number, time, value)
SELECT flow_field, flow_function, day + 1, day,
       round((mean + amplitude * cos(2 * pi() * (day - peak) / 365.25)) * (1 + flood * pow(max(0, wet - 0.25), 1.5))
             + variation * wet, 3)
FROM season, weather;

-- Mixing: 1 in the water, 2 in the pores of the bed, both in m2/s.
INSERT INTO exchange_field (number, scale_factor, conversion_factor)
VALUES (1, 1, 1),
       (2, 1, 1);

INSERT INTO exchange_function (exchange_field, number, description)
VALUES (1, 1, 'Longitudinal mixing by the tide, channels (m2/s)'),
       (1, 2, 'Longitudinal mixing by the tide, estuary (m2/s)'),
       (1, 3, 'Vertical mixing of surface and bottom water (m2/s)'),
       (2, 1, 'Diffusion between water and bed (m2/s)'),
       (2, 2, 'Diffusion within the bed (m2/s)');

-- Mixing along the flow: through the smaller of the two cross sections, between the middles of the segments;
-- at the sea through the segment's own section, over half its length.
WITH pair(exchange_function, number, first_segment, second_segment) AS (VALUES
        (1, 1, 4, 5), (1, 2, 4, 7), (1, 3, 5, 6), (1, 4, 7, 8), (1, 5, 6, 9), (1, 6, 8, 9),
        (2, 1, 9, 10), (2, 2, 10, 11), (2, 3, 11, 12), (2, 4, 12, 0), (2, 5, 13, 14), (2, 6, 14, 15), (2, 7, 15, 0))
INSERT INTO exchange_pair (exchange_field, exchange_function, number, first_segment, second_segment, area, length)
SELECT 1, exchange_function, pair.number, first_segment, second_segment,
       round(min(a.width * a.initial_depth, ifnull(b.width * b.initial_depth, 1e9)), 1),
       (a.length + ifnull(b.length, 0)) / 2
FROM pair
JOIN segment AS a ON a.number = first_segment
LEFT JOIN segment AS b ON b.number = second_segment;

-- Mixing between the layers of a column: through the floor of the upper one, between the middles of the layers.
-- In the pores only the water of the bed mixes, 70 % of its area; between water and bed over the bed's upper half.
WITH layer(field, function, upper, lower, area, distance) AS (
    SELECT CASE WHEN a.type < 3 AND b.type < 3 THEN 1 ELSE 2 END,
           CASE WHEN b.type = 2 THEN 3 WHEN b.type = 3 THEN 1 ELSE 2 END,
           a.number, b.number,
           b.length * b.width * iif(b.type < 3, 1, 0.7),
           CASE WHEN b.type = 3 THEN b.initial_depth / 2 ELSE (a.initial_depth + b.initial_depth) / 2 END
    FROM segment AS a
    JOIN segment AS b ON b.number = a.bottom_segment)
INSERT INTO exchange_pair (exchange_field, exchange_function, number, first_segment, second_segment, area, length)
SELECT field, function, row_number() OVER (PARTITION BY field, function ORDER BY upper), upper, lower, round(area, 1),
       round(distance, 3)
FROM layer;

-- Dispersion: of the tide daily, strongest at spring tide (every 14.77 days); vertical mixing and diffusion monthly,
-- weakest in summer where the water is layered, slowest in winter where the bed is cold.
WITH RECURSIVE
    day(day) AS (SELECT 0 UNION ALL SELECT day + 1 FROM day WHERE day < 365),
    tide(exchange_function, mean, amplitude) AS (VALUES (1, 12.0, 4.5), (2, 75.0, 28.0))
INSERT INTO exchange_value (exchange_field, exchange_function, number, time, value)
SELECT 1, exchange_function, day + 1, day, round(mean + amplitude * cos(2 * pi() * day / 14.77), 2)
FROM tide, day;

WITH RECURSIVE
    month(month) AS (SELECT 0 UNION ALL SELECT month + 1 FROM month WHERE month < 12),
    season(exchange_field, exchange_function, mean, amplitude) AS (VALUES
        (1, 3, 4.0e-5, 2.6e-5), (2, 1, 1.5e-9, -0.4e-9), (2, 2, 1.0e-9, -0.2e-9))
INSERT INTO exchange_value (exchange_field, exchange_function, number, time, value)
SELECT exchange_field, exchange_function, month + 1, round(month * 365 / 12.0, 2),
       round(mean + amplitude * cos(2 * pi() * (month - 1) / 12), 12)
FROM season, month;

-- Where water enters, its concentration has to be known, for every system at the same places: the two rivers, the sea
-- above and below, the effluent, and the ground water of the six places where it seeps in.
WITH place(number, segment) AS (VALUES
    (1, 1), (2, 3), (3, 12), (4, 15), (5, 6), (6, 16), (7, 17), (8, 18), (9, 28), (10, 29), (11, 30))
INSERT INTO boundary (system, number, segment)
SELECT system.number, place.number, place.segment FROM system, place;

-- Rivers and sea, daily: mean, half of the difference between summer and winter, day of the highest value, and how far
-- the weather moves it. In mg/L; phytoplankton in ug chlorophyll/L, salinity in g/kg.
WITH RECURSIVE
    day(day) AS (SELECT 0 UNION ALL SELECT day + 1 FROM day WHERE day < 365),
    weather(day, wet) AS (
        SELECT day, (sin(2 * pi() * day / 23) + sin(2 * pi() * day / 9.7) + sin(2 * pi() * day / 5.3)) / 3 FROM day),
    season(system, boundary, mean, amplitude, peak, variation) AS (VALUES
        (1, 1,  0.085,  0.045,  30,  0.020), (1, 2,  0.140,  0.060,  30,  0.050),
        (1, 3,  0.030,  0.012,  20,  0.005), (1, 4,  0.040,  0.015, 240,  0.005),
        (2, 1,  2.300,  0.900,  45,  0.300), (2, 2,  3.800,  1.300,  45,  0.600),
        (2, 3,  0.150,  0.100,  40,  0.015), (2, 4,  0.190,  0.080,  40,  0.010),
        (3, 1,  0.055,  0.020, 220,  0.012), (3, 2,  0.095,  0.030, 220,  0.030),
        (3, 3,  0.018,  0.008,  30,  0.002), (3, 4,  0.024,  0.006, 250,  0.002),
        (4, 1,  5.000,  3.800, 150,  0.800), (4, 2,  3.500,  2.500, 150,  0.600),
        (4, 3,  4.200,  3.000, 130,  0.700), (4, 4,  1.300,  0.900, 135,  0.200),
        (5, 1,  3.200,  0.600, 200,  0.900), (5, 2,  4.600,  0.900, 200,  1.400),
        (5, 3,  1.100,  0.300, 150,  0.100), (5, 4,  0.800,  0.200, 160,  0.050),
        (6, 1, 10.600,  2.000,  25,  0.250), (6, 2, 10.100,  2.100,  25,  0.350),
        (6, 3,  8.900,  1.100,  50,  0.100), (6, 4,  8.200,  1.300,  60,  0.080),
        (7, 1,  0.140,  0.030, 240,  0.010), (7, 2,  0.220,  0.050, 240,  0.015),
        (7, 3, 32.600,  0.600, 250,  0.200), (7, 4, 33.900,  0.300, 250,  0.060),
        (8, 1, 16.000,  7.000,  30,  7.000), (8, 2, 24.000,  9.000,  30, 11.000),
        (8, 3,  4.500,  1.800,  20,  1.200), (8, 4,  6.500,  2.200,  20,  1.500))
INSERT INTO boundary_value (system, boundary, number, time, value)
SELECT system, boundary, day + 1, day,
       round(mean + amplitude * cos(2 * pi() * (day - peak) / 365.25) + variation * wet, 4)
FROM season, weather;

-- Effluent and ground water hardly change in a year: one value at its start and one at its end. What the effluent
-- carries is given as loads below; here it brings its oxygen and its little salt, and elsewhere 0.
WITH steady(system, effluent, river_ground, estuary_ground) AS (VALUES
    (1, 0.0, 0.06, 0.35), (2, 0.0, 5.20, 1.40), (3, 0.0, 0.03, 0.08), (4, 0.0, 0.0, 0.0),
    (5, 0.0, 0.80, 1.20), (6, 5.5, 3.50, 0.80), (7, 0.45, 0.20, 6.0), (8, 0.0, 0.0, 0.0))
INSERT INTO boundary_value (system, boundary, number, time, value)
SELECT steady.system, boundary.number, moment.number, moment.time,
       CASE WHEN boundary.number = 5 THEN effluent WHEN boundary.number <= 8 THEN river_ground ELSE estuary_ground END
FROM steady
JOIN boundary ON boundary.system = steady.system AND boundary.number >= 5
JOIN (SELECT 1 AS number, 0 AS time UNION ALL SELECT 2, 365) AS moment;

-- Two point loads in kg/day: the effluent of the town's treatment plant in segment 6, which varies with the season and
-- the day of the week, and the wash water of a fish market at the quay of segment 10, which is closed on Sundays.
INSERT INTO load (system, number, segment)
SELECT number, 1, 6 FROM system WHERE tag IN ('NH3', 'NO3', 'PO4', 'CBODU', 'TSS')
UNION ALL
SELECT number, 2, 10 FROM system WHERE tag IN ('NH3', 'PO4', 'CBODU', 'TSS');

WITH RECURSIVE
    day(day) AS (SELECT 0 UNION ALL SELECT day + 1 FROM day WHERE day < 365),
    plant(tag, mean, amplitude) AS (VALUES
        ('NH3', 118.0, 26.0), ('NO3', 310.0, -40.0), ('PO4', 24.0, 3.0), ('CBODU', 420.0, 60.0), ('TSS', 360.0, 45.0)),
    market(tag, working_day) AS (VALUES ('NH3', 9.5), ('PO4', 2.1), ('CBODU', 165.0), ('TSS', 48.0))
INSERT INTO load_value (system, load, number, time, value)
SELECT number, 1, day + 1, day,
       round(mean + amplitude * cos(2 * pi() * (day - 30) / 365.25) + mean / 20 * sin(2 * pi() * day / 7), 2)
FROM plant JOIN system USING (tag), day
UNION ALL
SELECT number, 2, day + 1, day, iif(day % 7 = 0, 0, working_day)
FROM market JOIN system USING (tag), day;

-- What drives the model from outside. A type is known to the engine by its ISC number. The third water temperature is
-- measured but not used; of ice cover (ISC 13) there is no function at all.
INSERT INTO time_function_type (number, isc)
VALUES (1, 3),
       (2, 5),
       (3, 6),
       (4, 7),
       (5, 13);

INSERT INTO time_function (time_function_type, number, used, description)
VALUES (1, 1, 1, 'Water temperature, rivers (deg C)'),
       (1, 2, 1, 'Water temperature, estuary (deg C)'),
       (1, 3, 0, 'Water temperature, mill pond (deg C)'),
       (2, 1, 1, 'Solar radiation, daily mean (W/m2)'),
       (3, 1, 1, 'Day length (fraction of the day)'),
       (4, 1, 1, 'Wind speed at 10 m (m/s)');

-- Daily, as the boundaries above. Day length is that of 52 degrees north.
WITH RECURSIVE
    day(day) AS (SELECT 0 UNION ALL SELECT day + 1 FROM day WHERE day < 365),
    weather(day, wet) AS (
        SELECT day, (sin(2 * pi() * day / 23) + sin(2 * pi() * day / 9.7) + sin(2 * pi() * day / 5.3)) / 3 FROM day),
    season(time_function_type, time_function, mean, amplitude, peak, variation) AS (VALUES
        (1, 1,  10.8,   7.6,   203,  -1.2),
        (1, 2,  11.4,   6.4,   215,  -0.7),
        (1, 3,  11.2,   8.9,   200,  -1.5),
        (2, 1, 125.0,  98.0,   171, -22.0),
        (3, 1,   0.508, 0.180, 171,   0.0),
        (4, 1,   5.4,   1.3,    15,   2.1))
INSERT INTO time_function_value (time_function_type, time_function, number, time, value)
SELECT time_function_type, time_function, day + 1, day,
       round(mean + amplitude * cos(2 * pi() * (day - peak) / 365.25) + variation * wet, 4)
FROM season, weather;

-- What differs from segment to segment. The oxygen demand of the bed was surveyed twice; the first survey is kept and
-- not used.
INSERT INTO parameter_type (number, isc)
VALUES (1, 1),
       (2, 4),
       (3, 9),
       (4, 10);

INSERT INTO parameter (parameter_type, number, used, description, scale_factor)
VALUES (1, 1, 1, 'Water temperature function (number)', 1),
       (2, 1, 1, 'Light extinction of clear water (1/m)', 1),
       (3, 1, 0, 'Sediment oxygen demand, 1st survey (g/m2/d)', 1),
       (3, 2, 1, 'Sediment oxygen demand, 20 C (g/m2/d)', 1),
       (4, 1, 1, 'Solar radiation not shaded (0 to 1)', 1);

-- Beds (type 3 and 4) take the temperature of their column and nothing else.
WITH value(parameter_type, parameter, segment, value) AS (
    SELECT 1, 1, number, iif(number <= 8 OR number BETWEEN 16 AND 23, 1, 2) FROM segment
    UNION ALL
    SELECT 2, 1, number, CASE WHEN type >= 3 THEN 0 WHEN number <= 8 THEN 1.1 WHEN number = 9 THEN 0.9 ELSE 0.5 END
    FROM segment
    UNION ALL
    SELECT 3, 1, number, iif(type < 3 AND bottom_segment >= 16, 1.5, 0) FROM segment
    UNION ALL
    SELECT 3, 2, number,
           CASE WHEN type >= 3 OR bottom_segment < 16 THEN 0 WHEN number <= 4 THEN 0.8 WHEN number <= 8 THEN 1.4
                WHEN number = 9 THEN 1.8 ELSE 1.2 END
    FROM segment
    UNION ALL
    SELECT 4, 1, number, CASE WHEN type >= 3 THEN 0 WHEN number = 3 THEN 0.55 WHEN number <= 8 THEN 0.8 ELSE 1 END
    FROM segment)
INSERT INTO parameter_value (parameter_type, parameter, segment, value)
SELECT parameter_type, parameter, segment, value FROM value;

-- Constants of the whole water body, at 20 degrees C where they follow the temperature. The file shows 40 characters
-- of a description. ISC 40 has two instances; the second, of an older formula, is not used.
INSERT INTO constant_type (number, isc)
VALUES (1, 11), (2, 12), (3, 13), (4, 21), (5, 22), (6, 31), (7, 32), (8, 33), (9, 34), (10, 35), (11, 36), (12, 37),
       (13, 38), (14, 40), (15, 45), (16, 46), (17, 50);

INSERT INTO constant (constant_type, number, used, description, value)
VALUES (1, 1, 1, 'Nitrification rate (1/day)', 0.12),
       (2, 1, 1, 'Nitrification, theta (-)', 1.08),
       (3, 1, 1, 'Nitrification, half saturation (mg O2/L)', 2.0),
       (4, 1, 1, 'Denitrification rate (1/day)', 0.09),
       (5, 1, 1, 'Denitrification, theta (-)', 1.045),
       (6, 1, 1, 'Phytoplankton growth rate (1/day)', 2.0),
       (7, 1, 1, 'Phytoplankton growth, theta (-)', 1.068),
       (8, 1, 1, 'Phytoplankton respiration rate (1/day)', 0.125),
       (9, 1, 1, 'Phytoplankton death rate (1/day)', 0.02),
       (10, 1, 1, 'Carbon to chlorophyll (mg C/mg chl)', 40.0),
       (11, 1, 1, 'Nitrogen uptake, half sat. (mg N/L)', 0.025),
       (12, 1, 1, 'Phosphorus uptake, half sat. (mg P/L)', 0.001),
       (13, 1, 1, 'Phytoplankton settling velocity (m/day)', 0.1),
       (14, 1, 1, 'Reaeration rate, wind and flow (1/day)', 0.45),
       (14, 2, 0, 'Reaeration rate, older formula (1/day)', 0.6),
       (15, 1, 1, 'CBOD decay rate (1/day)', 0.16),
       (16, 1, 1, 'CBOD decay, theta (-)', 1.047),
       (17, 1, 1, 'Solids settling velocity (m/day)', 0.8);

-- What the segments hold on the first of January, in mg/L; salinity in g/kg; phytoplankton in mg C/L.
-- In the bed the solids are the sediment itself: 2.65 kg/L without its pores, 70 % at its surface and 60 % below.
WITH held(segment, nh3, no3, po4, phytc, cbod, oxygen, salinity, solids) AS (VALUES
        ( 1, 0.12, 2.9, 0.040, 0.06, 3.0, 12.4,  0.14,   22),
        ( 2, 0.12, 2.9, 0.041, 0.06, 3.0, 12.3,  0.14,   22),
        ( 3, 0.19, 4.7, 0.070, 0.05, 4.2, 12.0,  0.21,   31),
        ( 4, 0.13, 3.1, 0.044, 0.06, 3.1, 12.2,  0.15,   23),
        ( 5, 0.13, 3.1, 0.045, 0.06, 3.1, 12.1,  0.20,   24),
        ( 6, 0.21, 3.2, 0.058, 0.06, 3.4, 11.9,  0.60,   27),
        ( 7, 0.13, 3.1, 0.045, 0.06, 3.0, 12.1,  0.20,   24),
        ( 8, 0.13, 3.0, 0.045, 0.06, 3.0, 12.0,  0.55,   28),
        ( 9, 0.17, 2.6, 0.048, 0.07, 2.9, 11.3,  5.0,    42),
        (10, 0.13, 1.7, 0.040, 0.06, 2.3, 10.7, 14.0,    26),
        (11, 0.08, 0.9, 0.031, 0.06, 1.7, 10.3, 23.0,    13),
        (12, 0.05, 0.4, 0.025, 0.06, 1.3, 10.0, 30.5,     7),
        (13, 0.11, 1.1, 0.036, 0.04, 1.9, 10.0, 22.0,    35),
        (14, 0.07, 0.5, 0.029, 0.04, 1.3,  9.7, 30.0,    19),
        (15, 0.05, 0.3, 0.025, 0.04, 1.0,  9.5, 33.6,     9)),
    bed(upper, lower) AS (
        SELECT number, bottom_segment FROM segment WHERE bottom_segment >= 16),
    everywhere AS (
        SELECT * FROM held
        UNION ALL
        -- pore water: ammonia and phosphate given off by the sediment, neither oxygen nor nitrate to speak of
        SELECT lower, 1.5, 0.05, 0.20, 0, 6.0, 0.2, salinity, 2650000 * (1 - 0.7) FROM held JOIN bed ON upper = segment
        UNION ALL
        SELECT deep.lower, 3.0, 0.01, 0.35, 0, 4.0, 0.0, salinity, 2650000 * (1 - 0.6)
        FROM held
        JOIN bed AS top ON top.upper = segment
        JOIN bed AS deep ON deep.upper = top.lower)
INSERT INTO initial_condition (system, segment, concentration, dissolved_fraction)
SELECT 1, segment, nh3, 1.0 FROM everywhere
UNION ALL SELECT 2, segment, no3, 1.0 FROM everywhere
UNION ALL SELECT 3, segment, po4, 0.85 FROM everywhere
UNION ALL SELECT 4, segment, phytc, 0.0 FROM everywhere
UNION ALL SELECT 5, segment, cbod, 0.5 FROM everywhere
UNION ALL SELECT 6, segment, oxygen, 1.0 FROM everywhere
UNION ALL SELECT 7, segment, salinity, 1.0 FROM everywhere
UNION ALL SELECT 8, segment, solids, 0.0 FROM everywhere;
