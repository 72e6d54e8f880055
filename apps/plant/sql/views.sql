-- Views for any reporting tool; docs/plant.md describes them. Columns are added at the end and never change.

CREATE OR REPLACE VIEW plant.shift_slot AS
SELECT t.tod, coalesce(s.number, l.number) AS number, s.number IS NULL AS of_day_before
FROM (SELECT ('00:00'::time + make_interval(mins => 30 * n)) AS tod FROM generate_series(0, 47) AS n) AS t
LEFT JOIN LATERAL (SELECT number FROM plant.shift WHERE begins <= t.tod ORDER BY begins DESC LIMIT 1) AS s ON true
CROSS JOIN LATERAL (SELECT number FROM plant.shift ORDER BY begins DESC LIMIT 1) AS l;

CREATE OR REPLACE VIEW report.cell AS
SELECT id AS cell, grp AS plant_group, name, cell_id, online, seen, born, software, mode, plc, camera1, camera2, recording,
       disk_free, clock_off_ms, waiting, jsonb_array_length(alarms) AS alarms, last_part
FROM plant.cell;

CREATE OR REPLACE VIEW report.part AS
SELECT p.cell, c.grp AS plant_group, c.name, p.time, p.local_time, p.station, p.model, p.model_index,
       (ARRAY['found', 'notFound', 'refused'])[p.outcome + 1] AS outcome, p.error, p.angle, p.x, p.y, p.score, p.image_ms,
       p.result_ms, p.reply_ms, p.calibration, p.account, p.clock_wrong, p.picture, p.source, p.row, p.stored
FROM plant.part AS p JOIN plant.cell AS c ON c.id = p.cell;

CREATE OR REPLACE VIEW report.log AS
SELECT l.cell, c.grp AS plant_group, c.name, l.time, l.local_time, l.kind, l.text, l.account, l.source, l.row
FROM plant.log_row AS l JOIN plant.cell AS c ON c.id = l.cell;

CREATE OR REPLACE VIEW report.half_hour AS
SELECT p.cell, c.grp AS plant_group, c.name, p.slot AS local_time, p.slot::date AS day,
       p.slot::date - s.of_day_before::integer AS shift_day, s.number AS shift, p.station, p.model, p.calibration,
       p.found + p.not_found + p.refused AS parts, p.found, p.not_found, p.refused,
       p.x_sum / nullif(p.placed, 0) AS x_mean, p.y_sum / nullif(p.placed, 0) AS y_mean,
       p.score_sum / nullif(p.found, 0) AS score_mean, p.reply_sum / nullif(p.replies, 0) AS reply_ms_mean,
       p.reply_max AS reply_ms_max
FROM plant.part_slot AS p JOIN plant.cell AS c ON c.id = p.cell JOIN plant.shift_slot AS s ON s.tod = p.slot::time;

CREATE OR REPLACE VIEW report.day AS
SELECT cell, plant_group, name, day, station, model, sum(parts) AS parts, sum(found) AS found, sum(not_found) AS not_found,
       sum(refused) AS refused, round(100.0 * sum(found) / nullif(sum(parts), 0), 2) AS yield_percent
FROM report.half_hour GROUP BY 1, 2, 3, 4, 5, 6;

CREATE OR REPLACE VIEW report.shift AS
SELECT cell, plant_group, name, shift_day, shift, station, model, sum(parts) AS parts, sum(found) AS found,
       sum(not_found) AS not_found, sum(refused) AS refused,
       round(100.0 * sum(found) / nullif(sum(parts), 0), 2) AS yield_percent
FROM report.half_hour GROUP BY 1, 2, 3, 4, 5, 6, 7;

CREATE OR REPLACE VIEW report.calibration AS
SELECT k.cell, c.grp AS plant_group, c.name, k.station, k.version, k.since, k.numbers
FROM plant.calibration AS k JOIN plant.cell AS c ON c.id = k.cell;

CREATE OR REPLACE VIEW report.missing AS
SELECT g.cell, c.grp AS plant_group, c.name, g.stream, g.epoch, g.after, g.upto FROM plant.gap AS g
JOIN plant.cell AS c ON c.id = g.cell;

CREATE OR REPLACE VIEW report.kept_aside AS
SELECT id, first, last, times, reason, detail, topic, octet_length(payload) AS bytes FROM plant.aside;
