# Headers and sources of the loyalty service, relative to iface/.
set(loyalty_headers loyalty/loyalty.h loyalty/Api.h)
set(loyalty_sources loyalty/Api.cpp)
