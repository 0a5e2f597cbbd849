#include "app/ApplicationMain.h"

int main(int argc, char** argv) {
    return quillon::ApplicationMain(argc, argv);
}
