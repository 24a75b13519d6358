-- Texts of every length and kind in each of the fields. A field that is full has no room for the NUL after its text.

INSERT INTO model (nps_option, hydrodynamic_file, nps_file) VALUES (
    2,
    substr(replace(printf('%200s', ''), ' ', 'a/'), 1, 300) || 'Ästuar.hyd', -- 310 characters and blanks
    substr(replace(printf('%200s', ''), ' ', 'n/xy'), 1, 512) -- the field is full
);

INSERT INTO system (name, tag) VALUES
    ('', ''),
    ('A', 'B'),
    ('Twenty-nine characters long !', 'abcd'), -- the NUL is the last character
    ('Thirty characters long, full !', 'abcde'),
    ('Fifteen letters', '  c'), -- the last section shows them and no NUL
    ('Gelöster Sauerstoff, µg/L', 'ÄÖÜß');

INSERT INTO segment (name, flow_option) VALUES
    ('', 3),
    (' Mündung', 0),
    ('Thirty-nine characters, one short of it', 0),
    ('Forty characters, as many as it can hold', 0);

INSERT INTO initial_condition (system, segment, concentration)
    SELECT system.number, segment.number, 0 FROM system, segment;

INSERT INTO flow_field DEFAULT VALUES;
INSERT INTO flow_function (flow_field, number, description) VALUES
    (1, 1, 'Thirty characters are shown, !but all eighty of them stand with the flow paths !'),
    (1, 2, ''),
    (1, 3, 'Zufluß (m³/s): "Oberlauf", ''Wehr''');

INSERT INTO exchange_field DEFAULT VALUES;
INSERT INTO exchange_function (exchange_field, number, description) VALUES
    (1, 1, 'All of the eighty characters that a description can hold stand in its record --!'),
    (1, 2, '');

INSERT INTO time_function_type (isc) VALUES (1);
INSERT INTO time_function (time_function_type, number, description) VALUES
    (1, 1, 'Forty characters of the description and !forty more, which its record leaves out'),
    (1, 2, ''),
    (1, 3, 'Wassertemperatur, °C');

INSERT INTO parameter_type (isc) VALUES (1);
INSERT INTO parameter (parameter_type, number, description) VALUES
    (1, 1, 'Forty characters of the description and !twenty that are cut'),
    (1, 2, ''),
    (1, 3, 'Trübung, 1/m');
INSERT INTO parameter_value (parameter_type, parameter, segment, value)
    SELECT 1, parameter.number, segment.number, 1 FROM parameter, segment;

INSERT INTO constant_type (isc) VALUES (1);
INSERT INTO constant (constant_type, number, description, value) VALUES
    (1, 1, 'Forty characters of the description and !twenty that are cut', 1),
    (1, 2, 'Thirty-nine characters, then the NUL --', 1),
    (1, 3, '', 1), -- blanks only: the NUL stands first
    (1, 4, 'Abbau bei 20 °C', 1);
