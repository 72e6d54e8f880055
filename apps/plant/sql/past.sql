-- Counts of the last :days days for the cells of a demonstration, without the rows of single parts.
INSERT INTO plant.part_slot (cell, slot, station, model, calibration, found, not_found, refused, placed, x_sum, y_sum,
                             score_sum, replies, reply_sum, reply_max)
SELECT cell, slot, station, model, calibration, parts - bad - bad / 5, bad, bad / 5, parts - bad, (parts - bad) * (250 + moved),
       (parts - bad) * (180 + moved / 2), (parts - bad) * 96, parts, parts * 74.0, 82
FROM (
    SELECT c.id AS cell, t.slot, s AS station, (ARRAY['W-17', 'W-18A', 'W-21', 'K-5'])[1 + (c.id + t.n / 4) % 4] AS model,
           'K' || substr(c.name, 2)::integer || '-' || s AS calibration, 1500 + (random() * 300)::integer AS parts,
           (random() * CASE c.id % 17 WHEN 5 THEN 200 ELSE 30 END)::integer AS bad,
           CASE c.id % 11 WHEN 3 THEN 0.01 ELSE 0.0005 END * t.n / 48 + 0.004 * random() AS moved
    FROM plant.cell AS c, generate_series(1, 2) AS s,
         (SELECT n, date_trunc('day', now() AT TIME ZONE 'UTC' + interval '8 hours') - interval '30 minutes' * (:days * 48 - n)
                 AS slot FROM generate_series(0, :days * 48 - 1) AS n) AS t) AS made
ON CONFLICT DO NOTHING;
