// What it costs to start a program with the uninstaller's libraries and do nothing.
int main() {
    return 0;
}
