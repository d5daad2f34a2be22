# Headers and sources of the sales service, relative to iface/.
set(sales_headers
    sales/sales.h sales/Api.h
    sales/ItemInfoRequest.h
    sales/ItemInfoResponse.h
    sales/ReserveLinesEntryRequest.h
    sales/ReserveLinesEntryResponse.h
    sales/ReserveChequeRequest.h
    sales/ReserveChequeResponse.h
    sales/UnreserveChequeRequest.h
    sales/UnreserveChequeResponse.h)
set(sales_sources sales/Api.cpp sales/SalesRecords.cpp)
