-- What the page asks for, each as the JSON that it gets.

CREATE OR REPLACE FUNCTION local_day(p_cell cell) RETURNS date LANGUAGE sql STABLE AS $$
    SELECT (now() AT TIME ZONE 'UTC' + p_cell.utc_off)::date
$$;

CREATE OR REPLACE FUNCTION page_cells(p_only integer[]) RETURNS json LANGUAGE sql STABLE AS $$
    SELECT coalesce(json_agg(json_build_object(
        'id', c.id, 'group', c.grp, 'name', c.name, 'online', c.online, 'seen', c.seen, 'software', c.software,
        'mode', c.mode, 'plc', c.plc, 'camera1', c.camera1, 'camera2', c.camera2, 'recording', c.recording,
        'diskFree', c.disk_free, 'clockOff', c.clock_off_ms, 'waiting', c.waiting, 'alarms', c.alarms,
        'lastPart', c.last_part, 'utcOff', extract(epoch FROM c.utc_off)::integer, 'counts', d.counts, 'missing', g.rows,
        'twice', EXISTS (SELECT FROM cell AS o WHERE (o.grp, o.name) = (c.grp, c.name) AND o.id <> c.id
                         AND o.born > now() - interval '7 days' AND c.born > now() - interval '7 days'))
        ORDER BY c.grp, c.name), '[]')
    FROM cell AS c
    LEFT JOIN LATERAL (
        SELECT json_agg(json_build_array(station, f, n, r) ORDER BY station) AS counts FROM (
            SELECT station, sum(found) AS f, sum(not_found) AS n, sum(refused) AS r FROM part_slot
            WHERE cell = c.id AND slot >= local_day(c) AND slot < local_day(c) + 1 GROUP BY station) AS s) AS d ON true
    LEFT JOIN LATERAL (
        SELECT sum(g.upto - g.after) AS rows FROM gap AS g JOIN source AS s ON s.id = g.source
        WHERE g.cell = c.id AND s.gap_since < now() - interval '10 seconds') AS g ON true
    WHERE p_only IS NULL OR c.id = ANY (p_only)
$$;

-- What has changed of late, each with when: whoever asks knows which of it he has had.
CREATE OR REPLACE FUNCTION page_changes() RETURNS TABLE (id integer, changed text) LANGUAGE sql STABLE AS $$
    SELECT id, changed::text FROM cell WHERE changed > now() - interval '10 seconds'
    UNION ALL SELECT 0, max(last)::text FROM aside
$$;

CREATE OR REPLACE FUNCTION page_hours(p_cell integer, p_day date) RETURNS json LANGUAGE sql STABLE AS $$
    SELECT coalesce(json_agg(json_build_array(slot, f, n, r) ORDER BY slot), '[]') FROM (
        SELECT date_trunc('hour', slot) AS slot, sum(found) AS f, sum(not_found) AS n, sum(refused) AS r FROM part_slot
        WHERE cell = p_cell AND slot >= p_day AND slot < p_day + 1 GROUP BY 1) AS h
$$;

CREATE OR REPLACE FUNCTION page_month(p_cell integer, p_month date) RETURNS json LANGUAGE sql STABLE AS $$
    WITH s AS MATERIALIZED (SELECT * FROM part_slot WHERE cell = p_cell AND slot >= date_trunc('month', p_month)
                            AND slot < date_trunc('month', p_month) + interval '1 month')
    SELECT json_build_object(
        'days', (SELECT coalesce(json_agg(d ORDER BY d.day), '[]') FROM (
            SELECT slot::date AS day, sum(found) AS found, sum(not_found) AS "notFound", sum(refused) AS refused
            FROM s GROUP BY 1) AS d),
        'models', (SELECT coalesce(json_agg(m ORDER BY m.found DESC), '[]') FROM (
            SELECT model, sum(found) AS found, sum(not_found) AS "notFound", sum(refused) AS refused,
                   sum(score_sum) / nullif(sum(s.found), 0) AS score FROM s GROUP BY 1) AS m))
$$;

-- Newest first, from before a time on; of one outcome, or all.
CREATE OR REPLACE FUNCTION page_parts(p_cell integer, p_before timestamptz, p_outcome integer, p_pictures boolean,
                                      p_count integer) RETURNS json LANGUAGE sql STABLE AS $$
    SELECT coalesce(json_agg(r ORDER BY r.time DESC), '[]') FROM (
        SELECT p.source, p.row, p.time, p.local_time AS local, p.station, p.model, p.outcome, p.error, p.angle, p.x, p.y,
               p.score, p.reply_ms AS reply, p.calibration, p.clock_wrong AS "clockWrong",
               p.picture AND EXISTS (SELECT FROM picture WHERE (source, row) = (p.source, p.row)) AS picture
        FROM part AS p
        WHERE p.cell = p_cell AND p.time < p_before AND (p_outcome IS NULL OR p.outcome = p_outcome)
              AND (NOT p_pictures OR p.picture)
        ORDER BY p.time DESC LIMIT p_count) AS r
$$;

CREATE OR REPLACE FUNCTION page_log(p_cell integer, p_before timestamptz, p_count integer) RETURNS json
    LANGUAGE sql STABLE AS $$
    SELECT coalesce(json_agg(r ORDER BY r.time DESC), '[]') FROM (
        SELECT time, local_time AS local, kind, text, account FROM log_row
        WHERE cell = p_cell AND time < p_before ORDER BY time DESC LIMIT p_count) AS r
$$;

CREATE OR REPLACE FUNCTION page_compare(p_by text, p_from date, p_to date) RETURNS json LANGUAGE sql STABLE AS $$
    SELECT coalesce(json_agg(r ORDER BY r.key), '[]') FROM (
        SELECT CASE p_by WHEN 'cell' THEN c.grp || ' / ' || c.name WHEN 'model' THEN s.model
                         ELSE sh.number::text END AS key,
               sum(found) AS found, sum(not_found) AS "notFound", sum(refused) AS refused,
               sum(score_sum) / nullif(sum(found), 0) AS score, sum(reply_sum) / nullif(sum(replies), 0) AS reply,
               max(reply_max) AS "replyMax"
        FROM part_slot AS s JOIN cell AS c ON c.id = s.cell JOIN shift_slot AS sh ON sh.tod = s.slot::time
        WHERE s.slot >= p_from AND s.slot < p_to + 1 GROUP BY 1) AS r
$$;

-- Of each station the mean place of found parts day by day, as a distance from the first day with the same calibration
-- and model.
CREATE OR REPLACE FUNCTION page_drift(p_from date, p_to date) RETURNS json LANGUAGE sql STABLE AS $$
    WITH d AS (
        SELECT cell, station, calibration, model, slot::date AS day, sum(placed) AS n, sum(x_sum) / sum(placed) AS x,
               sum(y_sum) / sum(placed) AS y
        FROM part_slot WHERE slot >= p_from AND slot < p_to + 1 AND placed > 0 GROUP BY 1, 2, 3, 4, 5),
    b AS (
        SELECT *, x - first_value(x) OVER w AS dx, y - first_value(y) OVER w AS dy FROM d
        WINDOW w AS (PARTITION BY cell, station, calibration, model ORDER BY day)),
    s AS (
        SELECT cell, station, day, sum(n * dx) / sum(n) AS dx, sum(n * dy) / sum(n) AS dy,
               max(calibration) AS calibration FROM b GROUP BY 1, 2, 3)
    SELECT coalesce(json_agg(r), '[]') FROM (
        SELECT s.cell, c.grp AS "group", c.name, s.station,
               json_agg(json_build_array(day, round(dx::numeric, 4), round(dy::numeric, 4), calibration) ORDER BY day) AS days
        FROM s JOIN cell AS c ON c.id = s.cell GROUP BY 1, 2, 3, 4) AS r
$$;

CREATE OR REPLACE FUNCTION page_shift(p_cell integer, p_day date, p_shift integer) RETURNS json LANGUAGE sql STABLE AS $$
    WITH f AS (SELECT p_day + begins AS first FROM shift WHERE number = p_shift),
    t AS (SELECT first, coalesce((SELECT p_day + min(begins) FROM shift WHERE p_day + begins > first),
                                 p_day + 1 + (SELECT min(begins) FROM shift)) AS last FROM f),
    s AS MATERIALIZED (
        SELECT p.*, c.grp, c.name FROM t, part_slot AS p JOIN cell AS c ON c.id = p.cell
        WHERE (p_cell IS NULL OR p.cell = p_cell) AND slot >= t.first AND slot < t.last)
    SELECT json_build_object(
        'begin', (SELECT first FROM t), 'end', (SELECT last FROM t),
        'rows', (SELECT coalesce(json_agg(r ORDER BY r."group", r.name, r.station, r.model), '[]') FROM (
            SELECT grp AS "group", name, station, CASE WHEN p_cell IS NULL THEN '' ELSE model END AS model,
                   sum(found) AS found, sum(not_found) AS "notFound", sum(refused) AS refused,
                   sum(score_sum) / nullif(sum(found), 0) AS score, sum(reply_sum) / nullif(sum(replies), 0) AS reply,
                   max(reply_max) AS "replyMax" FROM s GROUP BY 1, 2, 3, 4) AS r),
        'hours', (SELECT coalesce(json_agg(json_build_array(slot, f, n, r) ORDER BY slot), '[]') FROM (
            SELECT date_trunc('hour', slot) AS slot, sum(found) AS f, sum(not_found) AS n, sum(refused) AS r
            FROM s GROUP BY 1) AS h),
        'errors', (SELECT json_agg(e) FROM (
            SELECT error, count(*) AS parts FROM part, t, cell AS c WHERE c.id = p_cell AND cell = p_cell AND error <> 0
                AND time >= (t.first - c.utc_off) AT TIME ZONE 'UTC' AND time < (t.last - c.utc_off) AT TIME ZONE 'UTC'
            GROUP BY 1 ORDER BY 2 DESC LIMIT 10) AS e WHERE p_cell IS NOT NULL),
        'alarms', (SELECT coalesce(json_agg(a ORDER BY a.local), '[]') FROM (
            SELECT l.local_time AS local, c.name, l.text FROM t, log_row AS l JOIN cell AS c ON c.id = l.cell
            WHERE (p_cell IS NULL OR l.cell = p_cell) AND l.kind = 'alarm'
                  AND l.time >= (t.first - c.utc_off) AT TIME ZONE 'UTC' AND l.time < (t.last - c.utc_off) AT TIME ZONE 'UTC'
            ORDER BY l.local_time LIMIT 200) AS a))
$$;

CREATE OR REPLACE FUNCTION page_faults() RETURNS json LANGUAGE sql STABLE AS $$
    SELECT json_build_object(
        'aside', (SELECT coalesce(json_agg(a ORDER BY a.last DESC), '[]') FROM (
            SELECT id, first, last, times, reason, detail, topic, octet_length(payload) AS bytes FROM aside
            ORDER BY last DESC LIMIT 200) AS a),
        'missing', (SELECT coalesce(json_agg(g), '[]') FROM (
            SELECT g.cell, c.grp AS "group", c.name, g.stream, g.after, g.upto, s.asks, s.asked FROM gap AS g
            JOIN cell AS c ON c.id = g.cell JOIN source AS s ON s.id = g.source
            WHERE s.gap_since < now() - interval '10 seconds' LIMIT 200) AS g))
$$;

CREATE OR REPLACE FUNCTION page_metrics() RETURNS text LANGUAGE sql STABLE AS $$
    SELECT string_agg(line, E'\n') || E'\n' FROM (
        SELECT '# TYPE valvecell_cells gauge' AS line
        UNION ALL SELECT format('valvecell_cells{online="%s"} %s', online, count(*)) FROM cell GROUP BY online
        UNION ALL SELECT '# TYPE valvecell_parts_today gauge'
        UNION ALL SELECT format('valvecell_parts_today{group="%s",cell="%s",outcome="%s"} %s', m.grp, m.name, o.outcome,
                                o.parts)
        FROM (SELECT c.id, replace(replace(c.grp, '\', '\\'), '"', '\"') AS grp,
                     replace(replace(c.name, '\', '\\'), '"', '\"') AS name, sum(found) AS f, sum(not_found) AS n,
                     sum(refused) AS r
              FROM cell AS c JOIN part_slot AS s ON s.cell = c.id AND s.slot >= local_day(c) GROUP BY 1, 2, 3) AS m,
             LATERAL (VALUES ('found', f), ('notFound', n), ('refused', r)) AS o(outcome, parts)
        UNION ALL SELECT '# TYPE valvecell_waiting_rows gauge'
        UNION ALL SELECT format('valvecell_waiting_rows %s', coalesce(sum(waiting), 0)) FROM cell
        UNION ALL SELECT '# TYPE valvecell_missing_rows gauge'
        UNION ALL SELECT format('valvecell_missing_rows %s', coalesce(sum(upto - after), 0)) FROM gap
        UNION ALL SELECT '# TYPE valvecell_alarms gauge'
        UNION ALL SELECT format('valvecell_alarms %s', coalesce(sum(jsonb_array_length(alarms)), 0)) FROM cell
        UNION ALL SELECT '# TYPE valvecell_kept_aside gauge'
        UNION ALL SELECT format('valvecell_kept_aside{reason="%s"} %s', reason, sum(times)) FROM aside GROUP BY reason
        UNION ALL SELECT '# TYPE valvecell_database_bytes gauge'
        UNION ALL SELECT format('valvecell_database_bytes %s', pg_database_size(current_database()))) AS l
$$;
