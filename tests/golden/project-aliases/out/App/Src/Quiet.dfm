object QuietForm: TQuietForm
  object DbQ: TDatabase [1]
    DatabaseName = 'Quiet'
  end
end
