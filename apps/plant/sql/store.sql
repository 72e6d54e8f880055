-- Storing. Made anew whenever the collector that starts has another text of it.

CREATE OR REPLACE FUNCTION ensure_month(p_table text, p_time timestamptz) RETURNS void LANGUAGE plpgsql AS $$
DECLARE
    l_first timestamptz := date_trunc('month', p_time AT TIME ZONE 'UTC') AT TIME ZONE 'UTC';
    l_name text := p_table || to_char(l_first AT TIME ZONE 'UTC', '_YYYY_MM');
BEGIN
    IF to_regclass('plant.' || l_name) IS NOT NULL THEN
        RETURN;
    END IF;
    PERFORM pg_advisory_xact_lock(7201);
    EXECUTE format('CREATE TABLE IF NOT EXISTS plant.%I PARTITION OF plant.%I FOR VALUES FROM (%L) TO (%L)', l_name,
                   p_table, l_first, (l_first AT TIME ZONE 'UTC' + interval '1 month') AT TIME ZONE 'UTC');
END $$;

-- The cell that has this identity; VC001 when it lives under another name.
CREATE OR REPLACE FUNCTION cell_of(p_group text, p_name text, p_cell uuid) RETURNS integer LANGUAGE plpgsql AS $$
DECLARE
    l_cell cell;
BEGIN
    SELECT * INTO l_cell FROM cell WHERE cell_id = p_cell;
    IF NOT FOUND THEN
        INSERT INTO cell (cell_id, grp, name) VALUES (p_cell, p_group, p_name) ON CONFLICT (cell_id) DO NOTHING;
        SELECT * INTO l_cell FROM cell WHERE cell_id = p_cell;
    END IF;
    IF (l_cell.grp, l_cell.name) <> (p_group, p_name) THEN
        RAISE EXCEPTION '%/% bears the identity of %/%', p_group, p_name, l_cell.grp, l_cell.name USING ERRCODE = 'VC001';
    END IF;
    RETURN l_cell.id;
END $$;

-- A time of a cell whose clock is far off is that of storing.
CREATE OR REPLACE FUNCTION is_clock_wrong(p_time timestamptz) RETURNS boolean LANGUAGE sql STABLE AS $$
    SELECT p_time NOT BETWEEN now() - interval '5 years' AND now() + interval '1 day'
$$;

CREATE OR REPLACE FUNCTION slot_of(p_local timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE AS $$
    SELECT date_bin('30 minutes', p_local, '2000-01-01')
$$;

-- The rows of a batch that are not stored, with the time that counts.
CREATE OR REPLACE FUNCTION parts_of(p_covered int8multirange, p_rows jsonb)
    RETURNS TABLE ("row" bigint, at timestamptz, local_at timestamp, wrong boolean, utc_off interval, station smallint,
                   outcome text, error integer, model_index integer, model text, calibration text, angle double precision,
                   x double precision, y double precision, score real, image_ms real, result_ms real, reply_ms real,
                   account text, picture boolean) LANGUAGE sql STABLE AS $$
    SELECT r.row, CASE WHEN w.wrong THEN now() ELSE r."creationTime" END,
           CASE WHEN w.wrong THEN now() AT TIME ZONE 'UTC' + w.off ELSE r."localTime" END, w.wrong, w.off, r.station,
           r.outcome, r.error, r."externalRecipeId", r."internalRecipeId", r."configurationId", r.angle, r.x, r.y, r.score,
           r."imageMs", r."resultMs", r."replyMs", r."user", r.picture
    FROM jsonb_to_recordset(p_rows) AS r(row bigint, "creationTime" timestamptz, "localTime" timestamp, station smallint,
             "externalRecipeId" integer, "internalRecipeId" text, "configurationId" text, outcome text, error integer,
             angle double precision, x double precision, y double precision, score real, "imageMs" real, "resultMs" real,
             "replyMs" real, "user" text, picture boolean),
         LATERAL (SELECT is_clock_wrong(r."creationTime") AS wrong,
                         date_bin('15 minutes', r."localTime" - (r."creationTime" AT TIME ZONE 'UTC') +
                                  timestamp '2000-01-01 00:07:30', '2000-01-01') - timestamp '2000-01-01' AS off) AS w
    WHERE NOT p_covered @> r.row
$$;

CREATE OR REPLACE FUNCTION store_parts(p_source source, p_rows jsonb) RETURNS integer LANGUAGE plpgsql AS $$
DECLARE
    l_count integer;
    l_off interval;
    l_last timestamptz;
BEGIN
    PERFORM ensure_month('part', m.month)
    FROM (SELECT DISTINCT date_trunc('month', at, 'UTC') AS month FROM parts_of(p_source.covered, p_rows)) AS m;
    WITH fresh AS (
        INSERT INTO part (source, row, time, cell, local_time, station, outcome, clock_wrong, picture, error, model_index,
                          model, calibration, angle, x, y, score, image_ms, result_ms, reply_ms, account, stored)
        SELECT p_source.id, row, at, p_source.cell, local_at, station,
               CASE outcome WHEN 'found' THEN 0 WHEN 'notFound' THEN 1 WHEN 'refused' THEN 2 END, wrong,
               coalesce(picture, false), coalesce(error, 0), model_index, coalesce(model, ''), coalesce(calibration, ''),
               angle, x, y, score, image_ms, result_ms, reply_ms, coalesce(account, ''), clock_timestamp()
        FROM parts_of(p_source.covered, p_rows)
        ON CONFLICT DO NOTHING
        RETURNING *),
    counted AS (
        INSERT INTO part_slot AS s
        SELECT cell, slot_of(local_time), station, model, calibration, count(*) FILTER (WHERE outcome = 0),
               count(*) FILTER (WHERE outcome = 1), count(*) FILTER (WHERE outcome = 2),
               count(*) FILTER (WHERE outcome = 0 AND x IS NOT NULL AND y IS NOT NULL),
               coalesce(sum(x) FILTER (WHERE outcome = 0 AND y IS NOT NULL), 0),
               coalesce(sum(y) FILTER (WHERE outcome = 0 AND x IS NOT NULL), 0),
               coalesce(sum(score) FILTER (WHERE outcome = 0), 0), count(reply_ms), coalesce(sum(reply_ms), 0),
               max(reply_ms)
        FROM fresh GROUP BY 1, 2, 3, 4, 5
        ON CONFLICT (cell, slot, station, model, calibration) DO UPDATE SET
            found = s.found + excluded.found, not_found = s.not_found + excluded.not_found,
            refused = s.refused + excluded.refused, placed = s.placed + excluded.placed,
            x_sum = s.x_sum + excluded.x_sum, y_sum = s.y_sum + excluded.y_sum,
            score_sum = s.score_sum + excluded.score_sum, replies = s.replies + excluded.replies,
            reply_sum = s.reply_sum + excluded.reply_sum, reply_max = greatest(s.reply_max, excluded.reply_max))
    SELECT count(*), max(time) INTO l_count, l_last FROM fresh;
    SELECT utc_off INTO l_off FROM parts_of(p_source.covered, p_rows) ORDER BY row DESC LIMIT 1;
    UPDATE cell SET utc_off = coalesce(l_off, utc_off), last_part = greatest(last_part, l_last),
                    changed = clock_timestamp()
    WHERE id = p_source.cell;
    RETURN l_count;
END $$;

CREATE OR REPLACE FUNCTION store_log(p_source source, p_rows jsonb) RETURNS integer
    LANGUAGE plpgsql AS $$
DECLARE
    l_count integer;
BEGIN
    PERFORM ensure_month('log_row', m.at) FROM (
        SELECT DISTINCT date_trunc('month', CASE WHEN is_clock_wrong("creationTime") THEN now() ELSE "creationTime" END,
                                   'UTC') AS at
        FROM jsonb_to_recordset(p_rows) AS r("creationTime" timestamptz)) AS m;
    INSERT INTO log_row (source, row, time, cell, local_time, kind, text, account, stored)
    SELECT p_source.id, r.row, CASE WHEN is_clock_wrong("creationTime") THEN now() ELSE "creationTime" END, p_source.cell,
           "localTime", kind, text, coalesce("user", ''), clock_timestamp()
    FROM jsonb_to_recordset(p_rows) AS r(row bigint, "creationTime" timestamptz, "localTime" timestamp, kind text,
         text text, "user" text)
    WHERE NOT p_source.covered @> r.row
    ON CONFLICT DO NOTHING;
    GET DIAGNOSTICS l_count = ROW_COUNT;
    RETURN l_count;
END $$;

-- A batch as plant-schema.md has it; the number of rows that were new. VC001: another cell's identity; VC002: not one
-- batch.
CREATE OR REPLACE FUNCTION store_batch(p_group text, p_name text, p_cell uuid, p_stream text, p_epoch uuid,
                                       p_after bigint, p_upto bigint, p_rows jsonb) RETURNS integer
    LANGUAGE plpgsql AS $$
DECLARE
    l_cell integer := cell_of(p_group, p_name, p_cell);
    l_source source;
    l_count integer;
BEGIN
    IF p_upto < p_after OR p_after < 0 OR EXISTS (
        SELECT FROM jsonb_to_recordset(p_rows) AS r(row bigint)
        WHERE r.row IS NULL OR r.row <= p_after OR r.row > p_upto) THEN
        RAISE EXCEPTION 'rows that are not in (%, %]', p_after, p_upto USING ERRCODE = 'VC002';
    END IF;
    SELECT * INTO l_source FROM source WHERE (cell, stream, epoch) = (l_cell, p_stream, p_epoch) FOR UPDATE;
    IF NOT FOUND THEN
        INSERT INTO source (cell, stream, epoch) VALUES (l_cell, p_stream, p_epoch) ON CONFLICT DO NOTHING;
        SELECT * INTO l_source FROM source WHERE (cell, stream, epoch) = (l_cell, p_stream, p_epoch) FOR UPDATE;
    END IF;
    IF p_stream = 'parts' THEN
        l_count := store_parts(l_source, p_rows);
    ELSE
        l_count := store_log(l_source, p_rows);
    END IF;
    UPDATE source SET covered = covered + int8multirange(int8range(p_after + 1, p_upto + 1)),
                      sent = greatest(sent, p_upto), stored = now()
    WHERE id = l_source.id;
    RETURN l_count;
END $$;

CREATE OR REPLACE FUNCTION store_picture(p_group text, p_name text, p_cell uuid, p_epoch uuid, p_row bigint,
                                         p_width integer, p_height integer, p_jpeg bytea) RETURNS void
    LANGUAGE plpgsql AS $$
DECLARE
    l_cell integer := cell_of(p_group, p_name, p_cell);
    l_source integer;
BEGIN
    INSERT INTO source (cell, stream, epoch) VALUES (l_cell, 'parts', p_epoch) ON CONFLICT DO NOTHING;
    SELECT id INTO l_source FROM source WHERE (cell, stream, epoch) = (l_cell, 'parts', p_epoch) FOR UPDATE;
    IF NOT EXISTS (SELECT FROM picture WHERE (source, row) = (l_source, p_row)) THEN
        PERFORM ensure_month('picture', now());
        INSERT INTO picture VALUES (l_source, p_row, now(), p_width, p_height, p_jpeg);
    END IF;
END $$;

CREATE OR REPLACE FUNCTION keep_aside(p_topic text, p_reason text, p_detail text, p_payload bytea) RETURNS void
    LANGUAGE plpgsql AS $$
BEGIN
    -- Whoever sends rubbish for days fills his own share alone.
    IF (SELECT count(*) FROM aside WHERE topic = p_topic) >= 1000 THEN
        DELETE FROM aside WHERE id = (SELECT id FROM aside WHERE topic = p_topic ORDER BY last LIMIT 1);
    END IF;
    INSERT INTO aside (topic, reason, detail, digest, payload)
    VALUES (p_topic, p_reason, p_detail, sha256(p_payload), substr(p_payload, 1, 262144))
    ON CONFLICT (topic, digest) DO UPDATE SET last = now(), times = aside.times + 1, reason = excluded.reason,
                                              detail = excluded.detail;
END $$;

CREATE OR REPLACE FUNCTION note_rows(p_cell integer, p_stream text, p_metrics jsonb) RETURNS void LANGUAGE plpgsql AS $$
DECLARE
    l_epoch uuid := p_metrics ->> ('Rows/' || p_stream || '/Epoch');
BEGIN
    IF l_epoch IS NULL THEN
        RETURN;
    END IF;
    INSERT INTO source AS s (cell, stream, epoch, first_row, last_row, sent)
    VALUES (p_cell, p_stream, l_epoch, (p_metrics ->> ('Rows/' || p_stream || '/First'))::bigint,
            (p_metrics ->> ('Rows/' || p_stream || '/Last'))::bigint,
            coalesce((p_metrics ->> ('Rows/' || p_stream || '/Sent'))::bigint, 0))
    ON CONFLICT (cell, stream, epoch) DO UPDATE SET first_row = coalesce(excluded.first_row, s.first_row),
        last_row = coalesce(excluded.last_row, s.last_row), sent = greatest(s.sent, excluded.sent);
END $$;

CREATE OR REPLACE FUNCTION note_calibration(p_cell integer, p_station integer, p_text text) RETURNS void
    LANGUAGE plpgsql AS $$
DECLARE
    l_numbers jsonb;
    l_version text;
BEGIN
    IF p_text IS NULL THEN
        RETURN;
    END IF;
    l_numbers := p_text::jsonb;
    l_version := coalesce(l_numbers ->> 'version', md5(p_text));
    IF l_version IS DISTINCT FROM (SELECT version FROM calibration WHERE (cell, station) = (p_cell, p_station)
                                   ORDER BY since DESC LIMIT 1) THEN
        INSERT INTO calibration (cell, station, version, numbers) VALUES (p_cell, p_station, l_version, l_numbers);
    END IF;
END $$;

-- What a birth (with all metrics) or a change says. VC001: the identity of a cell that is alive under another name.
-- False: of a cell that was not heard of, so that its birth has to be asked for.
CREATE OR REPLACE FUNCTION note_metrics(p_group text, p_name text, p_birth boolean, p_metrics jsonb) RETURNS boolean
    LANGUAGE plpgsql AS $$
DECLARE
    l_id uuid := p_metrics ->> 'Properties/CellId';
    l_cell cell;
    l_clock timestamptz := to_timestamp((p_metrics ->> 'Health/Clock')::double precision / 1000);
BEGIN
    IF p_birth THEN
        SELECT * INTO l_cell FROM cell WHERE cell_id = l_id FOR UPDATE;
        IF l_cell.online AND (l_cell.grp, l_cell.name) <> (p_group, p_name) THEN
            RAISE EXCEPTION '%/% bears the identity of %/%, which is alive', p_group, p_name, l_cell.grp, l_cell.name
                USING ERRCODE = 'VC001';
        END IF;
        UPDATE cell SET grp = p_group, name = p_name WHERE id = l_cell.id; -- renamed
        l_cell.id := cell_of(p_group, p_name, l_id);
    ELSE
        SELECT * INTO l_cell FROM cell WHERE (grp, name) = (p_group, p_name) ORDER BY born DESC NULLS LAST LIMIT 1;
        IF l_cell.born IS NULL OR NOT l_cell.online THEN
            RETURN false;
        END IF;
    END IF;
    UPDATE cell SET
        seen = now(), changed = clock_timestamp(), online = true, born = CASE WHEN p_birth THEN now() ELSE born END,
        bd_seq = coalesce((p_metrics ->> 'bdSeq')::bigint, bd_seq),
        software = coalesce(p_metrics ->> 'Properties/Software', software),
        plc = coalesce(p_metrics ->> 'Health/Plc', plc),
        camera1 = coalesce(p_metrics ->> 'Health/Camera/1', camera1),
        camera2 = coalesce(p_metrics ->> 'Health/Camera/2', camera2),
        recording = coalesce(p_metrics ->> 'Health/Recording', recording),
        mode = coalesce(p_metrics ->> 'Health/Mode', mode),
        disk_free = coalesce((p_metrics ->> 'Health/DiskFree')::bigint, disk_free),
        clock_off_ms = coalesce((extract(epoch FROM l_clock - now()) * 1000)::bigint, clock_off_ms),
        waiting = coalesce((p_metrics ->> 'Forward/Waiting')::bigint, waiting),
        alarms = coalesce((p_metrics ->> 'Alarms')::jsonb, alarms)
    WHERE id = l_cell.id;
    PERFORM note_rows(l_cell.id, 'parts', p_metrics);
    PERFORM note_rows(l_cell.id, 'log', p_metrics);
    PERFORM note_calibration(l_cell.id, 1, p_metrics ->> 'Calibration/1');
    PERFORM note_calibration(l_cell.id, 2, p_metrics ->> 'Calibration/2');
    RETURN true;
END $$;

-- A last will counts only for the cell and the birth that it belongs to.
CREATE OR REPLACE FUNCTION note_death(p_group text, p_name text, p_metrics jsonb) RETURNS void LANGUAGE sql AS $$
    UPDATE cell SET online = false, seen = now(), changed = clock_timestamp()
    WHERE (grp, name) = (p_group, p_name) AND online
          AND coalesce((p_metrics ->> 'Properties/CellId')::uuid, cell_id) = cell_id
          AND coalesce((p_metrics ->> 'bdSeq')::bigint, bd_seq) IS NOT DISTINCT FROM bd_seq
$$;

-- Of each source what the cell has sent and is not stored.
CREATE OR REPLACE VIEW gap AS
SELECT s.id AS source, s.cell, s.stream, s.epoch, lower(r) - 1 AS after, upper(r) - 1 AS upto
FROM source AS s,
     unnest(int8multirange(int8range(coalesce(s.first_row, 1), greatest(s.sent, coalesce(s.first_row, 1) - 1) + 1))
            - s.covered) AS r;

-- The gaps to ask for now: those that stand for five seconds, those of a source as one range, with a pause that doubles up to
-- a minute until it is closed. What is missing at the end may still be on its way: it is asked for when nothing of
-- the source has come for 20 seconds. Several collectors may call it; each gap goes to one of them.
CREATE OR REPLACE FUNCTION gaps_to_ask()
    RETURNS TABLE (grp text, name text, stream text, epoch uuid, after bigint, upto bigint) LANGUAGE plpgsql AS $$
BEGIN
    UPDATE source AS s SET gap_since = CASE WHEN s.gap_since IS NULL THEN now() END, asks = 0
    WHERE (s.gap_since IS NULL) = EXISTS (SELECT FROM gap WHERE source = s.id);
    RETURN QUERY WITH due AS (
        UPDATE source AS s SET asked = now(), asks = s.asks + 1
        FROM cell AS c
        WHERE c.id = s.cell AND c.online AND s.gap_since < now() - interval '5 seconds'
              AND (s.asked IS NULL OR s.asked < now() - least(interval '5 seconds' * 2 ^ least(s.asks, 10),
                                                              interval '1 minute'))
              AND (coalesce(s.stored, '-infinity') < now() - interval '20 seconds' OR
                   EXISTS (SELECT FROM gap WHERE source = s.id AND gap.upto < upper(s.covered) - 1))
        RETURNING s.id, c.grp, c.name)
    SELECT d.grp, d.name, g.stream, g.epoch, min(g.after), least(max(g.upto), min(g.after) + 20000)
    FROM due AS d JOIN gap AS g ON g.source = d.id GROUP BY d.id, 1, 2, 3, 4;
END $$;

-- Cells that are asked for their birth, which says what they have sent: those that are alive and silent, or all, and those
-- whose rows come although no birth was heard, since the collector came later. Whoever stays silent for longer is taken for
-- gone: his last will may have been lost with the broker.
CREATE OR REPLACE FUNCTION cells_to_rouse(p_all boolean) RETURNS TABLE (grp text, name text) LANGUAGE plpgsql AS $$
BEGIN
    UPDATE cell SET online = false, changed = clock_timestamp() WHERE online AND seen < now() - interval '5 minutes';
    RETURN QUERY UPDATE cell AS c SET reborn_asked = now()
        WHERE (c.online AND (p_all OR (c.seen < now() - interval '2 minutes'
                                      AND coalesce(c.reborn_asked, '-infinity') < now() - interval '1 minute')))
              OR (NOT c.online AND coalesce(c.reborn_asked, '-infinity') < now() - interval '5 seconds'
                  AND EXISTS (SELECT FROM source AS s WHERE s.cell = c.id AND s.stored > now() - interval '20 seconds'))
        RETURNING c.grp, c.name;
END $$;

-- Drops what is older than the policy; what was dropped.
CREATE OR REPLACE FUNCTION apply_retention() RETURNS SETOF text LANGUAGE plpgsql AS $$
DECLARE
    l_what retention;
    l_name text;
BEGIN
    PERFORM ensure_month(t.name, now() + make_interval(months => m))
    FROM (VALUES ('part'), ('log_row'), ('picture')) AS t(name), generate_series(0, 1) AS m;
    FOR l_what IN SELECT * FROM retention WHERE what IN ('part', 'log_row', 'picture') LOOP
        FOR l_name IN SELECT c.relname FROM pg_inherits AS i JOIN pg_class AS c ON c.oid = i.inhrelid
            WHERE i.inhparent = ('plant.' || l_what.what)::regclass
                  AND right(c.relname, 7) < to_char(now() AT TIME ZONE 'UTC' - make_interval(months => l_what.months),
                                                    'YYYY_MM') LOOP
            EXECUTE format('DROP TABLE plant.%I', l_name);
            RETURN NEXT l_name;
        END LOOP;
    END LOOP;
    DELETE FROM part_slot
    WHERE slot < now() - make_interval(months => (SELECT months FROM retention WHERE what = 'part_slot'));
    DELETE FROM aside WHERE last < now() - make_interval(months => (SELECT months FROM retention WHERE what = 'aside'));
    DELETE FROM session WHERE expires < now();
END $$;
