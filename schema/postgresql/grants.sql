-- What the host's user needs, and no more: it reads the rules and adds decisions and events. Put the
-- user's name in place of signutils_host and run this as the owner of the tables.

GRANT SELECT ON SSR_VERSION, SSR_HOLDER, SSR_HOLDERID, SSR_CONTRACT, SSR_CONTRACTCUR,
    SSR_CONTRACTRULE TO signutils_host;

-- Without SELECT nothing that was recorded can be read, changed or taken back by the host.
GRANT INSERT ON HST_SIGNRULES, EVT_JOURNAL TO signutils_host;
