-- The tables of the signature rules, their history and the event journal, on MariaDB.
-- Every text compares byte for byte, without padding; LOWER works on this collation all the same.
-- A statement ends with a semicolon at the end of a line. Each can be repeated.

-- One row for each script that was applied; the highest number is the schema's version.
CREATE TABLE IF NOT EXISTS SSR_VERSION (
    VERSION    INTEGER      NOT NULL PRIMARY KEY,
    NAME       VARCHAR(64)  NOT NULL
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

-- The people who may sign. OPPOSITION is text: 0, empty or no number means free to sign.
CREATE TABLE IF NOT EXISTS SSR_HOLDER (
    HUID       VARCHAR(64)  NOT NULL PRIMARY KEY,
    VPNAME     VARCHAR(8),
    FNAME      VARCHAR(255),
    LNAME      VARCHAR(255),
    OPPOSITION VARCHAR(20)
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

-- Their certificates. Two holders may share a common name, and a holder may have several. There is
-- no index on an expression here, so the look-up by certificate alone reads every row.
CREATE TABLE IF NOT EXISTS SSR_HOLDERID (
    HUID       VARCHAR(64)  NOT NULL,
    CN         VARCHAR(255) NOT NULL,
    SERIAL     VARCHAR(64),
    EXPIRDATE  DATE
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

CREATE INDEX IF NOT EXISTS SSR_HOLDERID_HUID ON SSR_HOLDERID (HUID);

-- The contracts, read when no rule of one was found.
CREATE TABLE IF NOT EXISTS SSR_CONTRACT (
    CUID       VARCHAR(64)  NOT NULL PRIMARY KEY,
    VPNAME     VARCHAR(8)   NOT NULL,
    VFNAME     VARCHAR(8)   NOT NULL,
    VCNAME     VARCHAR(8)   NOT NULL,
    PTC        INTEGER      NOT NULL,
    SERVER     INTEGER      NOT NULL,
    ALLHOLDERS INTEGER,
    OPPOSITION VARCHAR(20)
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

CREATE INDEX IF NOT EXISTS SSR_CONTRACT_KEY ON SSR_CONTRACT (VPNAME, VFNAME, VCNAME, PTC, SERVER);

-- The contracts as their rules apply to them. A row may await its identifier.
CREATE TABLE IF NOT EXISTS SSR_CONTRACTCUR (
    CUID       VARCHAR(64),
    VPNAME     VARCHAR(8)   NOT NULL,
    VFNAME     VARCHAR(8)   NOT NULL,
    VCNAME     VARCHAR(8)   NOT NULL,
    PROTOCOL   INTEGER      NOT NULL,
    TYPE       INTEGER      NOT NULL,
    SERVER     INTEGER      NOT NULL,
    PROFILE    INTEGER,
    ALLHOLDERS INTEGER,
    OPPOSITION VARCHAR(20)
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

CREATE INDEX IF NOT EXISTS SSR_CONTRACTCUR_KEY
    ON SSR_CONTRACTCUR (VPNAME, VFNAME, VCNAME, PROTOCOL, TYPE, SERVER);

-- The rules, in the order in which they are judged: that of their insertion, which the index on
-- CUID alone keeps.
CREATE TABLE IF NOT EXISTS SSR_CONTRACTRULE (
    CUID       VARCHAR(64)  NOT NULL,
    HUID1      VARCHAR(64),
    HUID2      VARCHAR(64),
    ALONE      INTEGER,
    AMOUNT     VARCHAR(32),
    TLEVEL     INTEGER
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

CREATE INDEX IF NOT EXISTS SSR_CONTRACTRULE_CUID ON SSR_CONTRACTRULE (CUID);

-- The decisions; ROWNO tells their order.
CREATE TABLE IF NOT EXISTS HST_SIGNRULES (
    ROWNO      BIGINT       NOT NULL AUTO_INCREMENT PRIMARY KEY,
    DATETIME   DATETIME     NOT NULL,
    SERVER     INTEGER,
    STATUT     VARCHAR(10)  NOT NULL,
    VPNAME     VARCHAR(8),
    TYPE_PTC   BIGINT,
    VFNAME     VARCHAR(8),
    VCNAME     VARCHAR(8),
    IDFICVFS   BIGINT,
    ORDERID    VARCHAR(10),
    TYPE_CTRL  INTEGER,
    SIGNER1    VARCHAR(511),
    SIGNER2    VARCHAR(511),
    MOTIF      VARCHAR(1024),
    CNS        VARCHAR(2048),
    TOTAL      DOUBLE PRECISION,
    MAXORDER   DOUBLE PRECISION,
    FILENAME   VARCHAR(256)
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;

-- The event journal. The unique key refuses an event that was delivered before.
CREATE TABLE IF NOT EXISTS EVT_JOURNAL (
    EVENTID    BIGINT       NOT NULL AUTO_INCREMENT PRIMARY KEY,
    EVENTKEY   VARCHAR(36)  NOT NULL UNIQUE,
    DATETIME   DATETIME     NOT NULL,
    SOURCE     VARCHAR(64),
    LEVEL      INTEGER      NOT NULL,
    REFERENCE  VARCHAR(1024),
    AUX1       VARCHAR(1024),
    AUX2       VARCHAR(1024),
    TEXT       LONGTEXT,
    ATTACHKIND VARCHAR(10),
    ATTACHPATH VARCHAR(260)
) ENGINE = InnoDB, CHARACTER SET utf8mb4, COLLATE utf8mb4_nopad_bin;
