// A synthetic enterprise catalog, described through the public interface:
// per table 20 columns of mixed datatypes (a share of them user datatypes
// from a list of 500), a primary key, two indexes, one or two foreign keys to
// earlier tables (some identifying, some naming parent columns, some walking
// the parent's primary key), a check constraint and a bound default; a
// trigger and a procedure per ten tables; defaults and rules bound to user
// datatypes. The same table count always gives the same catalog.
#pragma once

#include <VrnIntf.h>

struct CCatalogSize {
    long tables = 0;
    long attributes = 0;
    long foreignKeys = 0;
};

CCatalogSize DescribeSyntheticCatalog(CVrnAPI& builder, long tables);
