-- The tables of the signature rules, their history and the event journal, on SQL Server.
-- The collation compares byte for byte, but = of this server ignores trailing blanks in any text.
-- A statement ends with a semicolon at the end of a line. Each can be repeated.

-- One row for each script that was applied; the highest number is the schema's version.
IF OBJECT_ID(N'SSR_VERSION') IS NULL
CREATE TABLE SSR_VERSION (
    VERSION    INTEGER        NOT NULL PRIMARY KEY,
    NAME       VARCHAR(64)    COLLATE Latin1_General_100_BIN2 NOT NULL
);

-- The people who may sign. OPPOSITION is text: 0, empty or no number means free to sign.
IF OBJECT_ID(N'SSR_HOLDER') IS NULL
CREATE TABLE SSR_HOLDER (
    HUID       VARCHAR(64)    COLLATE Latin1_General_100_BIN2 NOT NULL PRIMARY KEY,
    VPNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2,
    FNAME      NVARCHAR(255),
    LNAME      NVARCHAR(255),
    OPPOSITION VARCHAR(20)
);

-- Their certificates. Two holders may share a common name, and a holder may have several. CNLOWER is
-- computed, for the index only: the server matches LOWER(CN) of a statement with it.
IF OBJECT_ID(N'SSR_HOLDERID') IS NULL
CREATE TABLE SSR_HOLDERID (
    HUID       VARCHAR(64)    COLLATE Latin1_General_100_BIN2 NOT NULL,
    CN         NVARCHAR(255)  COLLATE Latin1_General_100_BIN2 NOT NULL,
    SERIAL     VARCHAR(64),
    EXPIRDATE  DATE,
    CNLOWER    AS LOWER(CN) PERSISTED
);

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'SSR_HOLDERID_HUID')
CREATE INDEX SSR_HOLDERID_HUID ON SSR_HOLDERID (HUID);

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'SSR_HOLDERID_LOWERCN')
CREATE INDEX SSR_HOLDERID_LOWERCN ON SSR_HOLDERID (CNLOWER);

-- The contracts, read when no rule of one was found.
IF OBJECT_ID(N'SSR_CONTRACT') IS NULL
CREATE TABLE SSR_CONTRACT (
    CUID       VARCHAR(64)    COLLATE Latin1_General_100_BIN2 NOT NULL PRIMARY KEY,
    VPNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2 NOT NULL,
    VFNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2 NOT NULL,
    VCNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2 NOT NULL,
    PTC        INTEGER        NOT NULL,
    SERVER     INTEGER        NOT NULL,
    ALLHOLDERS INTEGER,
    OPPOSITION VARCHAR(20)
);

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'SSR_CONTRACT_KEY')
CREATE INDEX SSR_CONTRACT_KEY ON SSR_CONTRACT (VPNAME, VFNAME, VCNAME, PTC, SERVER);

-- The contracts as their rules apply to them. A row may await its identifier.
IF OBJECT_ID(N'SSR_CONTRACTCUR') IS NULL
CREATE TABLE SSR_CONTRACTCUR (
    CUID       VARCHAR(64)    COLLATE Latin1_General_100_BIN2,
    VPNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2 NOT NULL,
    VFNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2 NOT NULL,
    VCNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2 NOT NULL,
    PROTOCOL   INTEGER        NOT NULL,
    TYPE       INTEGER        NOT NULL,
    SERVER     INTEGER        NOT NULL,
    PROFILE    INTEGER,
    ALLHOLDERS INTEGER,
    OPPOSITION VARCHAR(20)
);

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'SSR_CONTRACTCUR_KEY')
CREATE INDEX SSR_CONTRACTCUR_KEY
    ON SSR_CONTRACTCUR (VPNAME, VFNAME, VCNAME, PROTOCOL, TYPE, SERVER);

-- The rules, in the order in which they are judged: that of their insertion, which the index on
-- CUID alone keeps.
IF OBJECT_ID(N'SSR_CONTRACTRULE') IS NULL
CREATE TABLE SSR_CONTRACTRULE (
    CUID       VARCHAR(64)    COLLATE Latin1_General_100_BIN2 NOT NULL,
    HUID1      VARCHAR(64)    COLLATE Latin1_General_100_BIN2,
    HUID2      VARCHAR(64)    COLLATE Latin1_General_100_BIN2,
    ALONE      INTEGER,
    AMOUNT     VARCHAR(32),
    TLEVEL     INTEGER
);

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'SSR_CONTRACTRULE_CUID')
CREATE INDEX SSR_CONTRACTRULE_CUID ON SSR_CONTRACTRULE (CUID);

-- The decisions; ROWNO tells their order.
IF OBJECT_ID(N'HST_SIGNRULES') IS NULL
CREATE TABLE HST_SIGNRULES (
    ROWNO      BIGINT         NOT NULL IDENTITY(1,1) PRIMARY KEY,
    DATETIME   DATETIME2(3)   NOT NULL,
    SERVER     INTEGER,
    STATUT     VARCHAR(10)    NOT NULL,
    VPNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2,
    TYPE_PTC   BIGINT,
    VFNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2,
    VCNAME     VARCHAR(8)     COLLATE Latin1_General_100_BIN2,
    IDFICVFS   BIGINT,
    ORDERID    VARCHAR(10)    COLLATE Latin1_General_100_BIN2,
    TYPE_CTRL  INTEGER,
    SIGNER1    NVARCHAR(511),
    SIGNER2    NVARCHAR(511),
    MOTIF      NVARCHAR(1024),
    CNS        NVARCHAR(2048),
    TOTAL      FLOAT(53),
    MAXORDER   FLOAT(53),
    FILENAME   NVARCHAR(256)
);

-- The event journal. The unique key refuses an event that was delivered before.
IF OBJECT_ID(N'EVT_JOURNAL') IS NULL
CREATE TABLE EVT_JOURNAL (
    EVENTID    BIGINT         NOT NULL IDENTITY(1,1) PRIMARY KEY,
    EVENTKEY   VARCHAR(36)    COLLATE Latin1_General_100_BIN2 NOT NULL UNIQUE,
    DATETIME   DATETIME2(3)   NOT NULL,
    SOURCE     VARCHAR(64),
    LEVEL      INTEGER        NOT NULL,
    REFERENCE  NVARCHAR(1024),
    AUX1       NVARCHAR(1024),
    AUX2       NVARCHAR(1024),
    TEXT       NVARCHAR(MAX),
    ATTACHKIND VARCHAR(10),
    ATTACHPATH NVARCHAR(260)
);
