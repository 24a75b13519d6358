-- Numbers at the edges of their columns. The comments say what a value becomes in its column.

INSERT INTO model (
    model_type, start_date_1, start_date_2, start_date_3, start_time_1, start_time_2, start_time_3,
    skip_date_1, skip_date_2, skip_date_3, skip_time_1, skip_time_2, skip_time_3,
    julian_end_time, mass_balance_table_output, solution_technique, negative_solution, restart,
    time_optimization, water_quality_linkage, topt_factor, maximum_time_step, minimum_time_step, print_interval,
    bed_volume_option, bed_compaction_time_step, volume_scale_factor, volume_conversion_factor
) VALUES (
    99999, 1, -2, 33, -44, 555, -666, -- five columns hold 99999
    7777, -8888, 10000, 100000, -9999, -10000, -- and overflow from 100000 and from -10000 on
    12345678.9, -- 10 columns, 1 decimal: stored as 12345679, the eighth digit is rounded away, no room is left
    2147483647, -2147483648, -1, 0, 12, 123,
    -0.00001, -- 10 columns, 4 decimals: nothing to show, so no sign
    99.9996, -- 6 columns, 3 decimals: the carry to 100.000 overflows
    -0.0001, -- 8 columns, 6 decimals: the leading zero gives way to the sign
    12345.678, -- 10 columns, 4 decimals: eight digits, the eighth rounded away
    -99999, 1000000, -- 10 columns, 3 decimals: overflow from a million on
    9999999, -1000000 -- 14 columns, 6 decimals: just fits, overflows with its sign
);

INSERT INTO system (
    name, boundary_scale_factor, boundary_conversion_factor, load_scale_factor, load_conversion_factor,
    solids_transport_field, solids_density, maximum_concentration
) VALUES
    ('Halves', 0.5, 0.0283168, -999999, 10000000, -1, 0.0625, 0.03125), -- exact halves of the last place: up
    ('Carries', 9.9999995, 0.99999949, 99999.9999, -0.0000005, 6, 999999, 9999999999), -- overflow of 15 columns
    ('Signs', -0.0000004, 0.0000005, -0.9999999, 1e30, 0, -0.0004, -0.00006);

-- Fifteen columns and five decimals: segment 1 shows carries and signs, segment 2 the eighth digit and overflow.
INSERT INTO segment (
    name, bottom_segment, type, flow_option, volume, velocity_multiplier, velocity_exponent, depth_multiplier,
    depth_exponent, slope, length, width, roughness, minimum_depth, initial_surface_elevation, bottom_elevation,
    side_slope, initial_depth, weir_height, weir_type
) VALUES
    ('Carries and signs', 2, 100000, -10000,
        0.015625, 0.046875, 0.078125, -- exact halves go up, also after an even digit
        9.999995, 99999.995, -- a carry that adds a digit; stored as 99999.9921875: eight digits, no carry
        0.000005, 0.00000501, -- stored just below the half of the last place, and just above
        -0.000004, -0.00001, -0.000006, -- no sign; a sign; rounded up to the last place
        -0.5, -9.9999999, 1.0, 0, 0.1, 1.17549435e-38),
    ('Eight digits and overflow', 0, 99999, -9999,
        12345674, 12345675, 16777216, 33554432, -- the eighth digit stays below 5, else it is rounded away
        123456.79, 999999.94, -- the same behind the point
        99999999, -99999999, -- stored as 100000000: just fits, overflows with its sign
        999999999, -9999999, -- overflow; fits
        3.4028234e38, -1e9,
        123456789, 1234567, 7654321.5, 87654.321);

INSERT INTO initial_condition (system, segment, concentration, dissolved_fraction) VALUES
    (1, 1, 0.09999995, 0.09999996), -- stored below and above 0.09999995: below, and not below 0.1 after rounding
    (1, 2, 0.9999994, 0.9999995), -- the second carries to 1
    (2, 1, 9.999994, 9.999997),
    (2, 2, 99999.94, 99999.95), -- the second is stored as 99999.953125 and carries to six integer digits: no decimals
    (3, 1, 999999, 999999.4), -- stored as 999999.375
    (3, 2, 999999.5, 999999.9375); -- would round to a million: exponent form

INSERT INTO flow_field (scale_factor, conversion_factor) VALUES (1e-7, 0.028316847);
INSERT INTO flow_function (flow_field, number, description) VALUES (1, 1, 'Fractions');
INSERT INTO flow_path (flow_field, flow_function, number, first_segment, second_segment, fraction) VALUES
    (1, 1, 1, 0, 1, 0.333),
    (1, 1, 2, 1, 2, 0.125), -- exact half
    (1, 1, 3, 2, 1, -0.004),
    (1, 1, 4, 2, 0, -99.995), -- the carry adds a digit
    (1, 1, 5, 1, 0, 1e12), -- stored as 999999995904: twelve columns are left, thirteen are needed
    (1, 1, 6, 2, 0, 123456789012); -- eight digits, and zeros
INSERT INTO flow_value (flow_field, flow_function, number, time, value) VALUES
    (1, 1, 1, 0, 1000000),
    (1, 1, 2, 0.05, -3e12),
    (1, 1, 3, 0.1, -0.5),
    (1, 1, 4, 1.5, 1e-30),
    (1, 1, 5, 12.5, 3.4028234e38),
    (1, 1, 6, 123.456, -1.17549435e-38),
    (1, 1, 7, 86400, 0.01), -- stored as 0.0099999998: the carry goes through to 1.000000E-02
    (1, 1, 8, 123456.789, 1234567.5),
    (1, 1, 9, -999999.5, 0.0123456785);

INSERT INTO exchange_field (scale_factor, conversion_factor) VALUES (123456.789, -1);
INSERT INTO exchange_function (exchange_field, number, description) VALUES (1, 1, 'Areas');
INSERT INTO exchange_pair (exchange_field, exchange_function, number, first_segment, second_segment, area, length)
VALUES (1, 1, 1, 1, 2, -0.09999999, 99.99995), (1, 1, 2, 2, 0, 1234.5678, 1e-5);

INSERT INTO boundary (system, number, segment) VALUES (1, 1, 1), (2, 1, 2), (3, 1, 2);
INSERT INTO boundary_value (system, boundary, number, time, value) VALUES
    (1, 1, 1, 365, 999999.44), (2, 1, 1, 0.0999999, 9999999), (3, 1, 1, -365.25, 100000);

-- Ten columns and four decimals.
INSERT INTO load (system, number, segment) VALUES (1, 1, 1), (2, 1, 2), (3, 1, 2);
INSERT INTO load_value (system, load, number, time, value) VALUES
    (1, 1, 1, 1.5, 0.00005), -- stored just below the half of the last place
    (1, 1, 2, 99999, -9999.5),
    (1, 1, 3, 100000, -10000), -- overflow
    (2, 1, 1, 9.99996, 9999.9997), -- carries that add a digit, from the fifth place and from the eighth digit
    (3, 1, 1, -0.00006, -0.00004);

INSERT INTO time_function_type (isc) VALUES (999), (1000), (-99), (-100); -- three columns
INSERT INTO time_function (time_function_type, number, description) VALUES
    (1, 1, 'Fits'), (2, 1, 'Overflows'), (3, 1, 'Fits'), (4, 1, 'Overflows');
INSERT INTO time_function_value (time_function_type, time_function, number, time, value) VALUES
    (1, 1, 1, 12345674, 1234.5675), -- overflow; the eighth digit is rounded away
    (3, 1, 1, 0.99995, 98765.4321); -- stored just below the half; as 98765.4297, the eighth digit rounded away

INSERT INTO parameter_type (isc) VALUES (99999), (100000);
INSERT INTO parameter (parameter_type, number, description, scale_factor) VALUES
    (1, 1, 'Eight digits', 99999.9999), -- stored as 100000: overflow
    (2, 1, 'Twenty columns', -0.00005);
INSERT INTO parameter_value (parameter_type, parameter, segment, value) VALUES
    (1, 1, 1, 12345674), -- twenty columns and four decimals
    (1, 1, 2, 12345675),
    (2, 1, 1, 1e14),
    (2, 1, 2, -1e14); -- overflow

INSERT INTO constant_type (isc) VALUES (-9999), (-10000);
INSERT INTO constant (constant_type, number, description, value) VALUES
    (1, 1, 'Stored as 123456.7890625', 123456.79),
    (1, 2, 'Stored as 999999986991104', 1e15), -- carries to sixteen integer digits: overflow
    (2, 1, 'Stored just above a half', -0.00015);
