ptf ~
UPDATE constant SET value = ~   kd             ~ WHERE constant_type = 1 AND number = 1;
UPDATE segment SET width = width * ~   wide           ~;
