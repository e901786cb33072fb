-- What an administrator runs once, in a PostgreSQL database that the users' machines share:
--
--     psql --dbname=planner --file=postgresql.sql
--
-- Then for each user:
--
--     CREATE ROLE anna LOGIN PASSWORD '…';
--     GRANT quorvane TO anna;
--
-- Each role sees and changes its own records only.

BEGIN;
SET LOCAL client_min_messages = warning;

DO $$
BEGIN
    IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'quorvane') THEN
        CREATE ROLE quorvane NOLOGIN;
    END IF;
END
$$;

CREATE TABLE IF NOT EXISTS "Task" (
    seq bigint GENERATED ALWAYS AS IDENTITY,
    owner name NOT NULL DEFAULT current_user,
    record_name text NOT NULL,
    "key" text,
    "date" bigint, -- milliseconds since 1970-01-01 00:00 UTC, as "due"
    "name" text,
    "desc" text,
    "due" bigint,
    "status" bigint,
    "statusName" text,
    "priority" bigint,
    "priorityName" text,
    "hidden" bigint,
    "startHour" bigint,
    "startMin" bigint,
    "endHour" bigint,
    "endMin" bigint,
    "client" text,
    "teamMember" text,
    "colorRed" double precision,
    "colorGreen" double precision,
    "colorBlue" double precision,
    "colorAlpha" double precision,
    PRIMARY KEY (owner, seq), -- with the owner: nobody can take the numbers of somebody else's records
    UNIQUE (owner, record_name)
);
CREATE INDEX IF NOT EXISTS "Task_key" ON "Task" (owner, "key");

-- Tables that an earlier version of this file made:
ALTER TABLE "Task" DROP CONSTRAINT "Task_pkey", ADD PRIMARY KEY (owner, seq);
DROP INDEX IF EXISTS "Task_order";

ALTER TABLE "Task" ENABLE ROW LEVEL SECURITY;
ALTER TABLE "Task" FORCE ROW LEVEL SECURITY; -- on the role that runs this, too, unless it is a superuser
DROP POLICY IF EXISTS own_records ON "Task";
CREATE POLICY own_records ON "Task" USING (owner = current_user) WITH CHECK (owner = current_user);

REVOKE ALL ON "Task" FROM PUBLIC;
GRANT SELECT, INSERT, UPDATE, DELETE ON "Task" TO quorvane;

COMMIT;
