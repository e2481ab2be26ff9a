/* Standard input out of a text, for prompts; put back with the object. */
#pragma once

#include <cstdio>
#include <stdio_ext.h>
#include <string>
#include <unistd.h>

struct TypedInput {
    int saved;

    explicit TypedInput(const std::string &text) : saved(dup(0)) {
        FILE *file = tmpfile();
        fwrite(text.data(), 1, text.size(), file);
        fflush(file);
        lseek(fileno(file), 0, SEEK_SET);
        dup2(fileno(file), 0);
        fclose(file);
        __fpurge(stdin);
        clearerr(stdin);
    }
    TypedInput(const TypedInput &) = delete;
    TypedInput &operator=(const TypedInput &) = delete;
    ~TypedInput() {
        dup2(saved, 0);
        close(saved);
        __fpurge(stdin);
        clearerr(stdin);
    }
};
