# Headers and sources of the sales service, relative to iface/.
set(sales_headers sales/sales.h sales/Api.h)
set(sales_sources sales/Api.cpp)
