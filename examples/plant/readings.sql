-- What cell press1 made of one register, with what came late in its place: sqlite3 -box plant.db <readings.sql
-- The rows of a gateway are numbered in the order in which they were read, whenever they came.
SELECT time, value, quality, CASE late WHEN 1 THEN 'late' ELSE '' END AS late
FROM readings
WHERE gateway = 'hall1' AND cell = 'press1' AND tag = 'R[3]'
ORDER BY number;
