/* Hash table that finds one record under several keys.  Duplicate keys are kept in their order. */
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

struct KeyedTable {
    struct Entry {
        std::string key;
        void *record = nullptr;
    };
    int buckets = 0;
    size_t record_size = 0;
    int key_count = 0;
    std::vector<std::vector<std::vector<Entry>>> tables; // [key][bucket] -> chain
    std::deque<std::vector<char>> records;               // in the order of insertion
    size_t current = 0;                                  // what TBL_next gives next
};

/* Empties the table and sets its sizes.  Returns 0, or -1 for impossible sizes: below 1, above a
 * million buckets, a hundred keys or a megabyte a record. */
int TBL_create(KeyedTable *table, int buckets, size_t record_size, int key_count);

/* Copies record_size bytes under key_count keys.  Returns 0, or -1 for a null record or key, or a
 * table without sizes. */
int TBL_insert(KeyedTable *table, const void *record, const char *const *keys);

/* Key numbers count from 1.  First record with exactly that key, or null. */
void *TBL_find(const KeyedTable *table, int key_number, const char *key);

/* Stores up to max records with that key; returns how many. */
int TBL_find_all(const KeyedTable *table, int key_number, const char *key, void **results, int max);

/* Walk the records in the order of insertion; null at the end. */
void TBL_rewind(KeyedTable *table);
void *TBL_next(KeyedTable *table);
int TBL_count(const KeyedTable *table);
void TBL_free(KeyedTable *table);
