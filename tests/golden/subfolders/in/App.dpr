unit App;
var Q: TQuery;
end.
