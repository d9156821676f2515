/* A tiny host of an installed Telvarra: its version and what it finds of the SDKs.
 * Exit code 0 when the library answered as installed. */
#include <stdio.h>
#include <string.h>
#include <telvarra/TelvarraApi.h>

int main(int argc, char** argv) {
    char report[64];
    if (argc < 2 || strcmp(telvarra_version(), argv[1]) != 0) return 1;
    if (telvarra_doctor(report, sizeof report) <= 0 || strncmp(report, "MindVision", 10) != 0)
        return 2;
    printf("consumer: Telvarra %s installed and answering\n", telvarra_version());
    return 0;
}
