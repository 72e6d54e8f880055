-- Tables. Rows lie in partitions by month; what was stored of a cell's stream is told by source.covered alone.
CREATE SCHEMA plant;
CREATE SCHEMA report;
SET search_path TO plant;

CREATE TABLE cell (
    id integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    cell_id uuid NOT NULL UNIQUE,
    grp text NOT NULL,
    name text NOT NULL,
    first_seen timestamptz NOT NULL DEFAULT now(),
    seen timestamptz NOT NULL DEFAULT now(),
    online boolean NOT NULL DEFAULT false,
    born timestamptz,
    bd_seq bigint,
    software text,
    plc text,
    camera1 text,
    camera2 text,
    recording text,
    mode text,
    disk_free bigint,
    clock_off_ms bigint,                       -- the cell's clock minus the database's
    utc_off interval NOT NULL DEFAULT '0',     -- of its local time
    waiting bigint,
    alarms jsonb NOT NULL DEFAULT '[]',
    last_part timestamptz,
    reborn_asked timestamptz,
    changed timestamptz NOT NULL DEFAULT now() -- anything that the page shows of it
);
CREATE INDEX cell_name ON cell (grp, name);

CREATE TABLE source (
    id integer GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    cell integer NOT NULL REFERENCES cell,
    stream text NOT NULL CHECK (stream IN ('parts', 'log')),
    epoch uuid NOT NULL,
    covered int8multirange NOT NULL DEFAULT '{}',
    first_row bigint,                          -- these three as the cell told
    last_row bigint,
    sent bigint NOT NULL DEFAULT 0,
    stored timestamptz,                        -- when something of it came last
    gap_since timestamptz,
    asked timestamptz,
    asks integer NOT NULL DEFAULT 0,           -- since it had no gap
    UNIQUE (cell, stream, epoch)
);

CREATE TABLE part (
    source integer NOT NULL,
    row bigint NOT NULL,
    time timestamptz NOT NULL,                 -- UTC, by the cell's clock; that of storing where the clock is far off
    cell integer NOT NULL,
    local_time timestamp NOT NULL,
    station smallint NOT NULL CHECK (station IN (1, 2)),
    outcome smallint NOT NULL,                 -- 0 found, 1 not found, 2 refused
    clock_wrong boolean NOT NULL,
    picture boolean NOT NULL,
    error integer NOT NULL,
    model_index integer,
    model text NOT NULL,
    calibration text NOT NULL,
    angle double precision,
    x double precision,
    y double precision,
    score real,
    image_ms real,
    result_ms real,
    reply_ms real,
    account text NOT NULL,
    stored timestamptz NOT NULL,
    PRIMARY KEY (source, row, time)
) PARTITION BY RANGE (time);
CREATE INDEX part_of_cell ON part (cell, time);

CREATE TABLE log_row (
    source integer NOT NULL,
    row bigint NOT NULL,
    time timestamptz NOT NULL,
    cell integer NOT NULL,
    local_time timestamp NOT NULL,
    kind text NOT NULL,
    text text NOT NULL,
    account text NOT NULL,
    stored timestamptz NOT NULL,
    PRIMARY KEY (source, row, time)
) PARTITION BY RANGE (time);
CREATE INDEX log_of_cell ON log_row (cell, time);

CREATE TABLE picture (
    source integer NOT NULL,
    row bigint NOT NULL,
    time timestamptz NOT NULL,                 -- of storing
    width integer,
    height integer,
    jpeg bytea NOT NULL
) PARTITION BY RANGE (time);
ALTER TABLE picture ALTER COLUMN jpeg SET STORAGE EXTERNAL;
CREATE INDEX picture_of_part ON picture (source, row);

-- Counts of half an hour of the cell's local time, kept with each batch; they outlive the rows.
CREATE TABLE part_slot (
    cell integer NOT NULL,
    slot timestamp NOT NULL,
    station smallint NOT NULL,
    model text NOT NULL,
    calibration text NOT NULL,
    found integer NOT NULL,
    not_found integer NOT NULL,
    refused integer NOT NULL,
    placed integer NOT NULL,                   -- parts of which x and y are known, and their sums
    x_sum double precision NOT NULL,
    y_sum double precision NOT NULL,
    score_sum double precision NOT NULL,
    replies integer NOT NULL,
    reply_sum double precision NOT NULL,
    reply_max real,
    PRIMARY KEY (cell, slot, station, model, calibration)
) WITH (fillfactor = 70);
CREATE INDEX slot_of_time ON part_slot (slot);

CREATE TABLE calibration (
    cell integer NOT NULL REFERENCES cell,
    station smallint NOT NULL,
    version text NOT NULL,
    since timestamptz NOT NULL DEFAULT now(),
    numbers jsonb NOT NULL,
    PRIMARY KEY (cell, station, version, since)
);

-- What was refused, kept for whoever looks into it.
CREATE TABLE aside (
    id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    first timestamptz NOT NULL DEFAULT now(),
    last timestamptz NOT NULL DEFAULT now(),
    times integer NOT NULL DEFAULT 1,
    reason text NOT NULL,
    detail text NOT NULL,
    topic text NOT NULL,
    digest bytea NOT NULL,
    payload bytea NOT NULL,
    UNIQUE (topic, digest)
);
CREATE INDEX aside_last ON aside (last);

CREATE TABLE shift (
    number smallint PRIMARY KEY,
    begins time NOT NULL UNIQUE CHECK (extract(epoch FROM begins)::integer % 1800 = 0)
);
INSERT INTO shift VALUES (1, '06:00'), (2, '14:00'), (3, '22:00');

CREATE TABLE retention (
    what text PRIMARY KEY,
    months integer NOT NULL CHECK (months > 0)
);
INSERT INTO retention VALUES ('part', 24), ('log_row', 24), ('picture', 3), ('part_slot', 120), ('aside', 3);

CREATE TABLE account (
    name text PRIMARY KEY,
    role text NOT NULL CHECK (role IN ('viewer', 'admin')),
    hash text NOT NULL,
    created timestamptz NOT NULL DEFAULT now()
);
CREATE TABLE session (
    token bytea PRIMARY KEY,                   -- SHA-256 of what the browser holds
    account text NOT NULL REFERENCES account ON DELETE CASCADE,
    expires timestamptz NOT NULL
);
