-- Nothing but the run itself: every count is 0, and each section has its fixed records only.

INSERT INTO model DEFAULT VALUES;
