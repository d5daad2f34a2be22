# Headers and sources of the disc service, relative to iface/.
set(disc_headers disc/disc.h disc/Api.h)
set(disc_sources disc/Api.cpp)
