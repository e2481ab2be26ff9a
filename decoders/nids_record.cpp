#include "decoders/nids_record.h"

namespace {
struct NidsRecords {
    NidsProduct product;
    NidsHeader header = {};
};
constinit NidsRecords records;
} // namespace

NidsProduct *NIDS_product() { return &records.product; }

NidsHeader *NIDS_header() { return &records.header; }

void NIDS_record_reset() { records = NidsRecords{}; }
