-- What the host's user needs, and no more: it reads the rules and adds decisions and events. Put the
-- user's name in place of signutils_host and run this in the database of the tables.

GRANT SELECT ON SSR_VERSION TO signutils_host;
GRANT SELECT ON SSR_HOLDER TO signutils_host;
GRANT SELECT ON SSR_HOLDERID TO signutils_host;
GRANT SELECT ON SSR_CONTRACT TO signutils_host;
GRANT SELECT ON SSR_CONTRACTCUR TO signutils_host;
GRANT SELECT ON SSR_CONTRACTRULE TO signutils_host;

-- Without SELECT nothing that was recorded can be read, changed or taken back by the host.
GRANT INSERT ON HST_SIGNRULES TO signutils_host;
GRANT INSERT ON EVT_JOURNAL TO signutils_host;
