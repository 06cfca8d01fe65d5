#pragma once

#include "ui/listing_form.h"

namespace molven {

class ArticleListing : public ListingForm {
public:
    explicit ArticleListing(Desk& desk);

private:
    Workspace workspace_;
};

class ClientListing : public ListingForm {
public:
    explicit ClientListing(Desk& desk);

private:
    Workspace workspace_;
};

class SupplierListing : public ListingForm {
public:
    explicit SupplierListing(Desk& desk);

private:
    Workspace workspace_;
};

} // namespace molven
