# Headers and sources of the disc service, relative to iface/.
set(disc_headers
    disc/disc.h disc/Api.h
    disc/CardListEntry.h
    disc/DiscountsEntryRequest.h
    disc/ExtraDataLineEntry.h
    disc/LinesEntryRequest.h
    disc/PaymentsEntryRequest.h
    disc/DiscCalcRequest.h
    disc/DiscCalcPayRequest.h
    disc/DiscountsEntryResponse.h
    disc/LinesEntryResponse.h
    disc/PaymentsEntryResponse.h
    disc/DiscCalcResponse.h
    disc/DiscCalcPayResponse.h
    disc/GetPublicityListRequest.h
    disc/PublicitiesEntry.h
    disc/VariantsEntry.h
    disc/GetPublicityListResponse.h)
set(disc_sources disc/Api.cpp disc/DiscRecords.cpp)
