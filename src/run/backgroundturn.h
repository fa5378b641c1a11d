// The turn to have a job in the background. All imports and exports of a process share one: their jobs take
// their parameters from class statics, and the poll loop of one that ran within the other's would hold it up.
// A turn is held by an object on the stack, on the user-interface thread.
#pragma once

class BackgroundTurn
{
public:
    // Takes the turn when it is free. `work` is a literal that says what it is taken for, such as "An export
    // is running". Otherwise writes to the log that `request`, such as "OK", is ignored.
    BackgroundTurn(const char *work, const char *request);
    ~BackgroundTurn();
    BackgroundTurn(const BackgroundTurn &) = delete;
    BackgroundTurn &operator=(const BackgroundTurn &) = delete;

    bool isMine() const { return m_isMine; }

    // Whether the turn can be taken; otherwise writes to the log that `request` is ignored.
    static bool isFreeFor(const char *request);

private:
    const bool m_isMine;
};
