#include "shell/keyed_table.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr int kHashRange = 35177;
constexpr int kMostBuckets = 1000000;
constexpr int kMostKeys = 100;
constexpr size_t kLargestRecord = size_t(1) << 20; // bytes

using Chain = std::vector<KeyedTable::Entry>;

size_t bucket_of(const KeyedTable &table, const char *key) {
    int hash = 0;
    for (const char *c = key; *c; c++) {
        hash = (hash * 257 + static_cast<signed char>(*c)) % kHashRange;
        if (hash < 0)
            hash += kHashRange;
    }
    return size_t(hash % table.buckets);
}

/* Chain that would hold the key, or null when the table has no such key number. */
const Chain *chain_of(const KeyedTable *table, int key_number, const char *key) {
    if (!key || key_number < 1 || key_number > table->key_count)
        return nullptr;
    return &table->tables[size_t(key_number) - 1][bucket_of(*table, key)];
}
} // namespace

int TBL_create(KeyedTable *table, int buckets, size_t record_size, int key_count) {
    TBL_free(table);
    if (buckets < 1 || buckets > kMostBuckets || key_count < 1 || key_count > kMostKeys ||
        record_size < 1 || record_size > kLargestRecord)
        return -1;
    table->buckets = buckets;
    table->record_size = record_size;
    table->key_count = key_count;
    table->tables.assign(size_t(key_count), std::vector<Chain>(size_t(buckets)));
    return 0;
}

int TBL_insert(KeyedTable *table, const void *record, const char *const *keys) {
    if (!record || !keys || table->key_count < 1)
        return -1;
    if (std::find(keys, keys + table->key_count, nullptr) != keys + table->key_count)
        return -1;
    const char *bytes = static_cast<const char *>(record);
    table->records.emplace_back(bytes, bytes + table->record_size);
    void *copy = table->records.back().data();
    for (size_t k = 0; k < table->tables.size(); k++)
        table->tables[k][bucket_of(*table, keys[k])].push_back({keys[k], copy});
    return 0;
}

void *TBL_find(const KeyedTable *table, int key_number, const char *key) {
    void *found = nullptr;
    TBL_find_all(table, key_number, key, &found, 1);
    return found;
}

int TBL_find_all(const KeyedTable *table, int key_number, const char *key, void **results,
                 int max) {
    const Chain *chain = chain_of(table, key_number, key);
    if (!chain)
        return 0;
    int n = 0;
    for (const KeyedTable::Entry &entry : *chain) {
        if (n >= max)
            break;
        if (entry.key == key)
            results[n++] = entry.record;
    }
    return n;
}

void TBL_rewind(KeyedTable *table) { table->current = 0; }

void *TBL_next(KeyedTable *table) {
    if (table->current >= table->records.size())
        return nullptr;
    return table->records[table->current++].data();
}

int TBL_count(const KeyedTable *table) { return int(table->records.size()); }

void TBL_free(KeyedTable *table) { *table = KeyedTable{}; }
