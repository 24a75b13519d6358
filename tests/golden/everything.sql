-- Every key is requested: a small model with each kind of item, and beside each kind one that is empty or unused.

INSERT INTO model (
    model_type, start_date_1, start_date_2, start_date_3, start_time_1, start_time_2, start_time_3,
    skip_date_1, skip_date_2, skip_date_3, skip_time_1, skip_time_2, skip_time_3,
    julian_end_time, mass_balance_table_output, solution_technique, negative_solution, restart,
    time_optimization, water_quality_linkage, topt_factor, maximum_time_step, minimum_time_step, print_interval,
    bed_volume_option, bed_compaction_time_step, volume_scale_factor, volume_conversion_factor,
    hydrodynamic_file, nps_option, nps_file
) VALUES (
    7, 3, 21, 2024, 6, 30, 15,
    4, 1, 2025, 12, 45, 50,
    365.5, 1, 2, 3, 4,
    5, 6, 0.9, 0.25, 0.0001, 1.5,
    1, 30.125, 1, 0.0283168,
    'runs/estuary.hyd', 1, 'loads/catchment.nps'
);

INSERT INTO system (
    name, tag, boundary_scale_factor, boundary_conversion_factor, load_scale_factor, load_conversion_factor,
    solids_transport_field, solids_density, maximum_concentration
) VALUES
    ('Dissolved oxygen', 'DISOX', 1, 2, 3, 4, 0, 1, 20),
    ('Silt', 'SILT', 5, 6, 7, 8, 3, 2.65, 1e5), -- without boundaries and loads: its factors are not exported
    ('Ammonia', 'NH3', 9, 10, 11, 12, 1, 1.25, 50.5);

INSERT INTO segment (
    name, bottom_segment, type, flow_option, volume, velocity_multiplier, velocity_exponent, depth_multiplier,
    depth_exponent, slope, length, width, roughness, minimum_depth, initial_surface_elevation, bottom_elevation,
    side_slope, initial_depth, weir_height, weir_type
) VALUES
    ('Head', 3, 1, 3, 1001, 1.002, 1.003, 1.004, 1.005, 1.006, 1007, 1008, 1.009, 1.01, 1.011, 1.012, 1.013, 1.014,
        1.015, 1.016),
    ('Mouth', 0, 1, 3, 2001, 2.002, 2.003, 2.004, 2.005, 2.006, 2007, 2008, 2.009, 2.01, 2.011, 2.012, 2.013, 2.014,
        2.015, 2.016),
    ('Bed', 0, 3, 0, 3001, 3.002, 3.003, 3.004, 3.005, 3.006, 3007, 3008, 3.009, 3.01, 3.011, 3.012, 3.013, 3.014,
        3.015, 3.016);

INSERT INTO initial_condition (system, segment, concentration, dissolved_fraction) VALUES
    (1, 1, 8.25, 1), (1, 2, 7.5, 0.75), (1, 3, 0, 0.5),
    (2, 1, 31, 0), (2, 2, 32, 0), (2, 3, 330000, 0),
    (3, 1, 0.05, 1), (3, 2, 0.06, 1), (3, 3, 0.25, 1);

-- Each named flow field and one more; only the first and the sixth have functions.
INSERT INTO flow_field (scale_factor, conversion_factor) VALUES
    (1, 0.0283168), (2, 2), (3, 3), (4, 4), (5, 5), (6, 0.5), (7, 7);
INSERT INTO flow_function (flow_field, number, description) VALUES
    (1, 1, 'River discharge from head to sea, measured daily at the old bridge of the town'),
    (1, 2, 'Without paths and pairs'),
    (6, 1, 'Evaporation');
INSERT INTO flow_path (flow_field, flow_function, number, first_segment, second_segment, fraction) VALUES
    (1, 1, 1, 0, 1, 1), (1, 1, 2, 1, 2, 0.75), (1, 1, 3, 2, 0, 0.25), (6, 1, 1, 2, 0, 1);
INSERT INTO flow_value (flow_field, flow_function, number, time, value) VALUES
    (1, 1, 1, 0, 120), (1, 1, 2, 1, 131.5), (6, 1, 1, 0.5, -0.25);

-- Each named exchange field and one more; the second has no functions.
INSERT INTO exchange_field (scale_factor, conversion_factor) VALUES (1.5, 2.5), (3.5, 4.5), (5.5, 6.5);
INSERT INTO exchange_function (exchange_field, number, description) VALUES
    (1, 1, 'Tidal mixing'), (1, 2, 'Without pairs and values'), (3, 1, 'Pore water');
INSERT INTO exchange_pair (exchange_field, exchange_function, number, first_segment, second_segment, area, length)
VALUES (1, 1, 1, 1, 2, 250, 1000), (1, 1, 2, 2, 0, 400, 1500), (3, 1, 1, 2, 3, 90000, 0.125);
INSERT INTO exchange_value (exchange_field, exchange_function, number, time, value) VALUES
    (1, 1, 1, 0, 15), (1, 1, 2, 365, 17.5), (3, 1, 1, 0, 1e-9);

INSERT INTO boundary (system, number, segment) VALUES (1, 1, 1), (1, 2, 2), (3, 1, 2); -- the last without values
INSERT INTO boundary_value (system, boundary, number, time, value) VALUES
    (1, 1, 1, 0, 9.5), (1, 1, 2, 180.25, 7), (1, 2, 1, 0, 8);

INSERT INTO load (system, number, segment) VALUES (1, 1, 2), (3, 1, 1), (3, 2, 2); -- the first without values
INSERT INTO load_value (system, load, number, time, value) VALUES
    (3, 1, 1, 0, 12.25), (3, 1, 2, 365, 13), (3, 2, 1, 0, 0.5);

INSERT INTO time_function_type (isc) VALUES (5), (8), (2); -- the second without functions
INSERT INTO time_function (time_function_type, number, used, description) VALUES
    (1, 1, 0, 'Water temperature, unused'),
    (1, 2, 1, 'Water temperature in the river, degrees Celsius, of the gauge at the old bridge'),
    (3, 1, 1, 'Wind, without values');
INSERT INTO time_function_value (time_function_type, time_function, number, time, value) VALUES
    (1, 1, 1, 0, 99), (1, 2, 1, 0, 4.5), (1, 2, 2, 200, 21.75);

INSERT INTO parameter_type (isc) VALUES (11), (12), (4); -- the second without parameters
INSERT INTO parameter (parameter_type, number, used, description, scale_factor) VALUES
    (1, 1, 0, 'Unused', 99),
    (1, 2, 1, 'Sediment oxygen demand, g/m2/day, measured in cores', 1.5),
    (3, 1, 1, 'Shading', 1);
INSERT INTO parameter_value (parameter_type, parameter, segment, value) VALUES
    (1, 1, 1, 99), (1, 1, 2, 99), (1, 1, 3, 99),
    (1, 2, 1, 0.5), (1, 2, 2, 0.75), (1, 2, 3, 1.25),
    (3, 1, 1, 0.125), (3, 1, 2, 0.25), (3, 1, 3, 1);

INSERT INTO constant_type (isc) VALUES (31), (32), (6); -- the second without constants
INSERT INTO constant (constant_type, number, used, description, value) VALUES
    (1, 1, 1, 'Nitrification rate at 20 degrees Celsius, 1/day', 0.125),
    (1, 2, 0, 'Unused', 99),
    (3, 1, 1, 'Temperature coefficient', 1.08);
