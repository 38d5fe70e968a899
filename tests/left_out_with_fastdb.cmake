# The tests that are not run with an installed FastDB, by what FastDB doesn't promise; docs/realtime-backends.md describes
# it. Patterns as GoogleTest's filter takes them.
set(left_out_with_fastdb
    # A reader waits for the writer and a writer for the readers.
    ExchangeProcesses.ReadersCompleteWhileAWriteTransactionIsHeldOpen
    ExchangeProcesses.WritersCompleteWhileAReadTransactionIsHeldOpen
    Transactions.ChangesAreSeenByOthersAfterTheCommit
    Transactions.ReadTransactionKeepsItsStateUntilItEnds
    Transactions.StepFromReadingToWritingFetchesTheNewestState
    Transactions.ReadersOfOneProcessComeForwardBesideAnOpenWriteTransaction
    Transactions.FileOpenedTwiceInOneProcessIsOneStore
    Transactions.SecondWriterInOneThreadIsRefusedInsteadOfHanging
    # A reader that was killed, or a thread or database that goes without a word, keeps its lock.
    ExchangeProcesses.KilledReaderBlocksNobodyAndItsPagesComeBack
    Transactions.DatabaseThatGoesUnclosedLosesWhatIsUncommitted
    Transactions.DatabaseClosedByAnotherThreadIsGoneForThisOne
    Transactions.DetachWithoutCommitRollsBack
    Transactions.ThreadThatEndsWithoutDetachLetsTheNextWriterIn
    # A program that was killed leaves a file that no other may open for reading before one has opened it for writing.
    RunService.TaskThatWasKilledKeepsNobodyOut
    # A full disk or map.
    ExchangeFailures.FullStoreIsReportedAndTheWholeOldModelStays
    ExchangeProcesses.FullDiskIsReportedAndTheWholeOldModelStays
    # A number for each table of its last change: without one all is stored again.
    StoredUnits.*
    # A damaged file.
    ExchangeFailures.ModelInADamagedStoreIsReadAndWrittenWithoutHarm
    RtdbCheck.RefusesDamageAndSoDoesEveryReader
    # The size of the file shows nothing: it grows by doubling.
    Cursors.UpdateThatChangesNothingWritesNothing
    # An error handler that returns: FastDB leaves a failed call by an exception, or goes on in it.
    ExchangeFailures.DatabaseOpenForReadingIsReadAndNotWritten
    Cursors.RowThatHasGoneGivesAMessageAndNoRow
    Cursors.ViewOnlyCursorRefusesUpdateAndRemove
    Cursors.ViewOnlyRemoveAllEmptiesTheTable
    Errors.*
    Queries.FaultsGiveAMessageAndNoRows
    Queries.FaultyQueryLeavesTheNextAlone
    Queries.WordsThatAreNoKeywordsCanBeColumns
    Transactions.OpenForReadingOnlyRefusesChanges
    # Calls on a database that is not open or a thread that is not attached, null as a bound text, conditions without end:
    # FastDB asserts or crashes.
    Cursors.OutliveTheirDatabasesOpenTime
    CursorsOnNothing.ReportIt
    Descriptors.InsertIntoATableOfNoDatabaseGivesNoReference
    Descriptors.UnassignedTableHasACopyInEachDatabase
    ExchangeFailures.DatabaseThatCouldNotBeOpenedGivesEmptyTablesAndTakesNothing
    Queries.DepthIsLimited
    Queries.LimitsOfDepthAndConditionsAreExact
    Queries.NullTextIsEmpty
    Transactions.ThreadThatIsNotAttachedIsReported
    # Where cursors and texts stand after a change of the row.
    Cursors.RemoveGoesToTheFollowingRow
    Cursors.TextOfTheRecordOutlivesAnUpdateOfTheSameRowByAnotherCursor
    # The order among equal keys; "order by" behind conditions on a key that are joined by "or".
    Cursors.EqualIdsAreAllKept
    QueryOfTwoKeys.RowsOfOneKeyComeAsTheyWereInserted
    QueryRange.ConditionsOnKeysAgreeWithAWalk
    # Unsigned columns, and numbers beyond a column's range.
    Queries.FormsSelectTheirRows
    QueryRange.BoundsBeyondTheColumnsRange)
