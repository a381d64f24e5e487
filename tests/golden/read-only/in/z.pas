var Q: TQuery;
end.
