// A module without the entry that makes it a server.

extern "C" int NothingToOffer()
{
    return 0;
}
